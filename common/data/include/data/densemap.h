// A hash map whose entries lie side by side.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace Orv::Data {

// Has the functions of std::unordered_map that are in use, and is faster where a map is large: the
// entries are in one array and the table of hashes in another, so that a search touches one cache
// line of each. Entries keep the order in which they came until one is erased; the last one then
// takes its place. Any insertion or removal makes pointers to entries and iterators invalid.
template <class Key, class Value, class Hash = std::hash<Key>>
class DenseMap
{
public:
    class Entry
    {
    public:
        Entry(Key key, Value itsValue) : value(std::move(itsValue)), m_key(std::move(key)) {}
        const Key& key() const { return m_key; }

        Value value;

    private:
        Key m_key;
    };
    using iterator = typename std::vector<Entry>::iterator;
    using const_iterator = typename std::vector<Entry>::const_iterator;

    bool empty() const { return m_entries.empty(); }
    std::size_t size() const { return m_entries.size(); }
    iterator begin() { return m_entries.begin(); }
    iterator end() { return m_entries.end(); }
    const_iterator begin() const { return m_entries.begin(); }
    const_iterator end() const { return m_entries.end(); }

    iterator find(const Key& key)
    {
        return m_entries.begin() + static_cast<std::ptrdiff_t>(indexOf(key));
    }
    const_iterator find(const Key& key) const
    {
        return m_entries.begin() + static_cast<std::ptrdiff_t>(indexOf(key));
    }
    bool contains(const Key& key) const { return indexOf(key) != size(); }
    // The key is there.
    Value& at(const Key& key) { return m_entries[indexOf(key)].value; }
    const Value& at(const Key& key) const { return m_entries[indexOf(key)].value; }

    // Adds an entry, unless there is one of that key. Returns the entry of the key, and true if it
    // has been added.
    std::pair<iterator, bool> emplace(Key key, Value value)
    {
        if (const iterator known = find(key); known != end())
            return {known, false};
        reserve(size() + 1);
        m_entries.emplace_back(std::move(key), std::move(value));
        place(spread(m_entries.back().key()), static_cast<std::uint32_t>(size() - 1));
        return {end() - 1, true};
    }
    // Returns the value of a key, which is a default one if it was not there.
    Value& operator[](const Key& key)
    {
        const iterator known = find(key);
        return (known != end() ? known : emplace(key, Value()).first)->value;
    }

    // Returns true if there was one.
    bool erase(const Key& key)
    {
        const iterator known = find(key);
        if (known == end())
            return false;
        erase(known);
        return true;
    }
    void erase(const_iterator entry)
    {
        const auto index = static_cast<std::uint32_t>(entry - m_entries.cbegin());
        const auto last = static_cast<std::uint32_t>(size() - 1);
        freeSlot(slotOf(index));
        if (index != last) {
            m_slots[slotOf(last)].entry = index;
            m_entries[index] = std::move(m_entries[last]);
        }
        m_entries.pop_back();
    }
    void clear()
    {
        m_entries.clear();
        m_slots.clear();
    }
    // Makes room for so many entries in all.
    void reserve(std::size_t count)
    {
        if (2 * count <= m_slots.size())
            return;
        std::size_t length = SmallestTable;
        while (length < 2 * count)
            length *= 2;
        m_slots = std::vector<Slot>(length);
        for (std::uint32_t i = 0; i < size(); ++i)
            place(spread(m_entries[i].key()), i);
    }

private:
    // A hash is at its home or in a later slot, without a free one between, round the end.
    struct Slot
    {
        std::uint32_t hash = 0;
        std::uint32_t entry = Free;
    };
    static constexpr std::uint32_t Free = ~std::uint32_t{0};
    static constexpr std::size_t SmallestTable = 8;

    // Hashes of numbers and pointers are these themselves: the product makes use of all their bits.
    static std::uint32_t spread(const Key& key)
    {
        constexpr std::uint64_t GoldenRatio = 0x9E3779B97F4A7C15; // times 2^64
        return static_cast<std::uint32_t>((std::uint64_t{Hash()(key)} * GoldenRatio) >> 32);
    }
    std::size_t mask() const { return m_slots.size() - 1; }

    // Returns size() if there is none.
    std::size_t indexOf(const Key& key) const
    {
        if (m_entries.empty())
            return 0;
        const std::uint32_t hash = spread(key);
        std::size_t slot = hash & mask();
        for (; m_slots[slot].entry != Free; slot = (slot + 1) & mask())
            if (m_slots[slot].hash == hash && m_entries[m_slots[slot].entry].key() == key)
                return m_slots[slot].entry;
        return size();
    }
    std::size_t slotOf(std::uint32_t entry) const
    {
        std::size_t slot = spread(m_entries[entry].key()) & mask();
        while (m_slots[slot].entry != entry)
            slot = (slot + 1) & mask();
        return slot;
    }
    void place(std::uint32_t hash, std::uint32_t entry)
    {
        std::size_t slot = hash & mask();
        while (m_slots[slot].entry != Free)
            slot = (slot + 1) & mask();
        m_slots[slot] = {hash, entry};
    }
    // Moves what was pushed over the slot back towards its home.
    void freeSlot(std::size_t slot)
    {
        for (std::size_t next = (slot + 1) & mask(); m_slots[next].entry != Free;
             next = (next + 1) & mask()) {
            const std::size_t fromHome = (next - m_slots[next].hash) & mask();
            if (fromHome < ((next - slot) & mask()))
                continue;
            m_slots[slot] = m_slots[next];
            slot = next;
        }
        m_slots[slot] = Slot();
    }

    std::vector<Entry> m_entries;
    std::vector<Slot> m_slots; // a power of two, at least twice the entries; none without entries
};

} // namespace Orv::Data
