#include "standalone/model_service/documents/BlockMemory.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace standalone {

namespace {

constexpr std::size_t Unit = alignof(std::max_align_t);
/// More at once, and the heap would tidy itself up at every return.
constexpr std::size_t SlabBytes = 32 * 1024;

struct alignas(Unit) Slab
{
    std::atomic<int> users{1}; ///< pieces in use, and one while it is the slab that is taken from
    std::size_t used = 0;      ///< bytes behind this head
};

/// Stands before every piece.
struct alignas(Unit) PieceHead
{
    Slab* slab;
};

void release(Slab* slab)
{
    if (slab->users.fetch_sub(1, std::memory_order_acq_rel) != 1)
        return;
    slab->~Slab();
    std::free(slab);
}

Slab* newSlab(std::size_t bytes)
{
    void* const memory = std::malloc(sizeof(Slab) + bytes);
    if (!memory)
        throw std::bad_alloc();
    return new (memory) Slab;
}

/// The slab that a thread takes from; given up at the thread's end.
struct Current
{
    ~Current()
    {
        if (slab)
            release(slab);
        slab = nullptr;
    }
    Slab* slab = nullptr;
};

} // namespace

void* BlockMemory::take(std::size_t bytes)
{
    thread_local Current current;
    const auto needed = sizeof(PieceHead) + (bytes + Unit - 1) / Unit * Unit;
    if (!current.slab || current.slab->used + needed > SlabBytes) {
        if (current.slab)
            release(current.slab);
        current.slab = newSlab(needed > SlabBytes ? needed : SlabBytes);
    }
    Slab* const slab = current.slab;
    char* const place = reinterpret_cast<char*>(slab + 1) + slab->used;
    slab->used += needed;
    slab->users.fetch_add(1, std::memory_order_relaxed);
    return new (place) PieceHead{slab} + 1;
}

void BlockMemory::giveBack(void* memory)
{
    release((static_cast<PieceHead*>(memory) - 1)->slab);
}

} // namespace standalone
