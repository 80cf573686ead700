#pragma once

#include <cstddef>

namespace standalone {

/// Memory for blocks, which are large, many and made one after the other: taken from slabs, so that
/// a document is made and dropped without asking the heap for each. A slab goes with its last
/// block. Any thread.
class BlockMemory
{
public:
    static void* take(std::size_t bytes);
    static void giveBack(void* memory);
};

/// The allocator over it, for std::allocate_shared.
template <class T> struct BlockAllocator
{
    using value_type = T;

    BlockAllocator() = default;
    template <class Other> BlockAllocator(const BlockAllocator<Other>&) {}

    T* allocate(std::size_t count)
    {
        static_assert(alignof(T) <= alignof(std::max_align_t));
        return static_cast<T*>(BlockMemory::take(count * sizeof(T)));
    }
    void deallocate(T* memory, std::size_t) { BlockMemory::giveBack(memory); }

    template <class Other> bool operator==(const BlockAllocator<Other>&) const { return true; }
    template <class Other> bool operator!=(const BlockAllocator<Other>&) const { return false; }
};

} // namespace standalone
