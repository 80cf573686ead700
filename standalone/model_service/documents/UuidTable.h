#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

namespace standalone {

/// Entries by their uuid, in one piece of memory: a hash table with open addressing. An entry tells
/// its uuid by uuid(); the text is not copied. An entry whose uuid is
/// changed from outside is found no more, and does no other harm.
///
/// Pointers to entries hold till the next insertion or removal.
template <class Entry> class UuidTable
{
public:
    std::size_t size() const { return m_entries.size(); }

    void clear()
    {
        m_entries.clear();
        m_slots.clear();
    }

    /// Makes room for @p count entries.
    void reserve(std::size_t count)
    {
        m_entries.reserve(count);
        auto size = std::max(m_slots.size(), fewest);
        while (size < count * 2)
            size *= 2;
        if (size > m_slots.size())
            resize(size);
    }

    const Entry* find(std::string_view uuid) const { return search(uuid, hashOf(uuid)); }
    Entry* find(std::string_view uuid)
    {
        return const_cast<Entry*>(std::as_const(*this).find(uuid));
    }

    /// False, with the table as it was, if the uuid is taken.
    bool insert(Entry entry)
    {
        const auto hash = hashOf(entry.uuid());
        if (search(entry.uuid(), hash))
            return false;
        if ((m_entries.size() + 1) * 2 > m_slots.size())
            resize(std::max(m_slots.size() * 2, fewest));
        m_entries.push_back({std::move(entry), hash});
        enter(hash, static_cast<std::uint32_t>(m_entries.size()));
        return true;
    }

    void erase(std::string_view uuid)
    {
        const auto* found = find(uuid);
        if (!found)
            return;
        const auto index =
            static_cast<std::uint32_t>(reinterpret_cast<const Stored*>(found) - m_entries.data());
        vacate(slotOf(index));
        const auto last = static_cast<std::uint32_t>(m_entries.size() - 1);
        if (index != last) {
            m_slots[slotOf(last)].number = index + 1;
            m_entries[index] = std::move(m_entries[last]);
        }
        m_entries.pop_back();
    }

private:
    static constexpr std::size_t fewest = 16;

    struct Slot
    {
        std::uint32_t hash = 0;
        std::uint32_t number = 0; ///< of the entry, from 1; 0 for a free slot
    };
    struct Stored
    {
        Entry entry;
        std::uint32_t hash;
    };

    static std::uint32_t hashOf(std::string_view uuid)
    {
        return static_cast<std::uint32_t>(std::hash<std::string_view>()(uuid));
    }
    std::size_t mask() const { return m_slots.size() - 1; }

    const Entry* search(std::string_view uuid, std::uint32_t hash) const
    {
        if (m_slots.empty())
            return nullptr;
        for (auto at = hash & mask(); m_slots[at].number != 0; at = (at + 1) & mask()) {
            const auto& slot = m_slots[at];
            if (slot.hash == hash && m_entries[slot.number - 1].entry.uuid() == uuid)
                return &m_entries[slot.number - 1].entry;
        }
        return nullptr;
    }

    void enter(std::uint32_t hash, std::uint32_t number)
    {
        auto at = hash & mask();
        while (m_slots[at].number != 0)
            at = (at + 1) & mask();
        m_slots[at] = {hash, number};
    }

    void resize(std::size_t size)
    {
        m_slots.assign(size, Slot());
        std::uint32_t number = 0;
        for (const auto& stored : m_entries)
            enter(stored.hash, ++number);
    }

    std::size_t slotOf(std::uint32_t index) const
    {
        auto at = m_entries[index].hash & mask();
        while (m_slots[at].number != index + 1)
            at = (at + 1) & mask();
        return at;
    }

    /// Frees a slot and moves those behind it up, so that every search still meets no gap.
    void vacate(std::size_t gap)
    {
        for (auto at = (gap + 1) & mask(); m_slots[at].number != 0; at = (at + 1) & mask()) {
            const auto home = m_slots[at].hash & mask();
            if (((at - home) & mask()) >= ((at - gap) & mask())) {
                m_slots[gap] = m_slots[at];
                gap = at;
            }
        }
        m_slots[gap] = Slot();
    }

    std::vector<Slot> m_slots; ///< a power of two, at most half of them taken
    std::vector<Stored> m_entries;
};

} // namespace standalone
