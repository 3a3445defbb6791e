// A row of values in which values come and go anywhere without a walk.
#pragma once

#include "data/blocksums.h"
#include "data/densemap.h"
#include <QtGlobal>
#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace Orv::Data {

// A short row is one array. A long one consists of blocks, with a tree of the sums of their sizes:
// a position is found in logarithmic time, and an insertion or removal moves values of one block.
// Blocks that have become short stay until they are empty. A row of pointers, owning ones or not, has
// each pointer once, and finds it without a walk as well.
template <class T>
class Row
{
    // The pointer by which a value is found; none for values that are no pointers.
    struct NoKey
    {};
    template <class Value>
    static NoKey keyOf(const Value&)
    {
        return {};
    }
    template <class Object>
    static const Object* keyOf(Object* const& value)
    {
        return value;
    }
    template <class Object>
    static const Object* keyOf(const std::unique_ptr<Object>& value)
    {
        return value.get();
    }
    using Key = decltype(keyOf(std::declval<const T&>()));

    struct Block
    {
        std::vector<T> values;
        std::size_t number; // among the blocks
    };

public:
    // A read-only walk. Any change of the row makes it invalid.
    class ConstIterator
    {
    public:
        using value_type = T;
        using reference = const T&;
        using pointer = const T*;
        using difference_type = std::ptrdiff_t;
        using iterator_category = std::forward_iterator_tag;

        ConstIterator() = default;
        const T& operator*() const { return *m_value; }
        const T* operator->() const { return m_value; }
        ConstIterator& operator++()
        {
            if (++m_value == m_end)
                enter(m_block + 1);
            return *this;
        }
        ConstIterator operator++(int)
        {
            const ConstIterator former = *this;
            ++*this;
            return former;
        }
        friend bool operator==(const ConstIterator& a, const ConstIterator& b)
        {
            return a.m_value == b.m_value;
        }
        friend bool operator!=(const ConstIterator& a, const ConstIterator& b) { return !(a == b); }

    private:
        friend class Row;
        explicit ConstIterator(const Row& row) : m_row(&row) { enter(0); }
        void enter(std::size_t block)
        {
            const std::vector<T>* const values = m_row->valuesOf(block);
            m_block = block;
            m_value = values == nullptr ? nullptr : values->data();
            m_end = values == nullptr ? nullptr : values->data() + values->size();
        }

        const Row* m_row = nullptr;
        std::size_t m_block = 0;
        const T* m_value = nullptr; // null behind the last one
        const T* m_end = nullptr;   // of the block
    };

    std::size_t size() const { return m_blocks == nullptr ? m_values.size() : m_blocks->size; }
    bool empty() const { return size() == 0; }
    // `index` is below size().
    const T& operator[](std::size_t index) const
    {
        Q_ASSERT(index < size());
        if (m_blocks == nullptr)
            return m_values[index];
        const Place place = m_blocks->placeOf(index);
        return place.block->values[place.offset];
    }
    T& operator[](std::size_t index) { return const_cast<T&>(std::as_const(*this)[index]); }
    const T& front() const { return (*this)[0]; }
    const T& back() const { return (*this)[size() - 1]; }
    ConstIterator begin() const { return ConstIterator(*this); }
    ConstIterator end() const { return ConstIterator(); }

    // Puts a value before the one at `index`, which is at most size().
    void insert(std::size_t index, T value)
    {
        Q_ASSERT(index <= size());
        if (m_blocks == nullptr && m_values.size() == BlockSize)
            m_blocks = std::make_unique<Blocks>(std::exchange(m_values, {}));
        if (m_blocks == nullptr)
            m_values.insert(m_values.begin() + static_cast<std::ptrdiff_t>(index),
                            std::move(value));
        else
            m_blocks->insert(index, std::move(value));
    }
    void pushBack(T value) { insert(size(), std::move(value)); }

    // Takes the value at `index`, which is below size(), out of the row.
    T take(std::size_t index)
    {
        Q_ASSERT(index < size());
        if (m_blocks != nullptr) {
            T taken = m_blocks->take(index);
            if (m_blocks->size == 0)
                m_blocks.reset();
            return taken;
        }
        T taken = std::move(m_values[index]);
        m_values.erase(m_values.begin() + static_cast<std::ptrdiff_t>(index));
        return taken;
    }

    // Takes all values out of the row.
    std::vector<T> takeAll()
    {
        std::vector<T> taken = std::exchange(m_values, {});
        if (const auto blocks = std::exchange(m_blocks, nullptr))
            for (const auto& block : blocks->blocks)
                std::move(block->values.begin(), block->values.end(), std::back_inserter(taken));
        return taken;
    }
    void clear() { takeAll(); }

    // Returns the position of a pointer, size() if it is not in the row.
    std::size_t indexOf(Key pointer) const
    {
        return m_blocks == nullptr ? offsetOf(m_values, pointer) : m_blocks->indexOf(pointer);
    }

private:
    static constexpr std::size_t BlockSize = 256; // at most

    struct Place
    {
        Block* block;
        std::size_t offset;
    };

    static std::size_t offsetOf(const std::vector<T>& values, Key pointer)
    {
        const auto found = std::find_if(values.begin(), values.end(), [pointer](const T& value) {
            return keyOf(value) == pointer;
        });
        return static_cast<std::size_t>(found - values.begin());
    }

    // Knows the block of each pointer.
    template <class Pointer>
    struct Finder
    {
        void enter(Pointer pointer, Block* block) { blocks[pointer] = block; }
        void leave(Pointer pointer) { blocks.erase(pointer); }
        DenseMap<Pointer, Block*> blocks;
    };
    struct NoFinder
    {
        void enter(NoKey, Block*) {}
        void leave(NoKey) {}
    };

    struct Blocks
    {
        explicit Blocks(std::vector<T> values)
        {
            size = values.size();
            add(0, std::move(values));
        }

        Place placeOf(std::size_t index) const
        {
            const BlockSums::Place place = sums.placeOf(index);
            return {blocks[place.block].get(), place.offset};
        }
        std::size_t indexOf(Key pointer) const
        {
            const auto found = finder.blocks.find(pointer);
            if (found == finder.blocks.end())
                return size;
            return sums.before(found->value->number) + offsetOf(found->value->values, pointer);
        }
        void insert(std::size_t index, T value)
        {
            Place place = placeToInsert(index);
            if (place.block->values.size() == BlockSize)
                place = makeRoom(place);
            Block& block = *place.block;
            finder.enter(keyOf(value), &block);
            block.values.insert(block.values.begin() + static_cast<std::ptrdiff_t>(place.offset),
                                std::move(value));
            ++size;
            sums.grow(block.number);
        }
        T take(std::size_t index)
        {
            const auto [block, offset] = placeOf(index);
            T taken = std::move(block->values[offset]);
            block->values.erase(block->values.begin() + static_cast<std::ptrdiff_t>(offset));
            finder.leave(keyOf(taken));
            --size;
            sums.shrink(block->number);
            if (block->values.empty()) {
                blocks.erase(blocks.begin() + static_cast<std::ptrdiff_t>(block->number));
                sumUp();
            }
            return taken;
        }

        std::vector<std::unique_ptr<Block>> blocks;
        BlockSums sums;
        std::size_t size = 0;
        std::conditional_t<std::is_same_v<Key, NoKey>, NoFinder, Finder<Key>> finder;

    private:
        Place placeToInsert(std::size_t index) const
        {
            return index < size ? placeOf(index)
                                : Place{blocks.back().get(), blocks.back()->values.size()};
        }
        // Splits a full block: at its end for a value that comes behind the last one, so that a row
        // that grows there has full blocks, and in the middle otherwise.
        Place makeRoom(const Place& place)
        {
            std::vector<T>& values = place.block->values;
            const bool isLast = place.block == blocks.back().get();
            const std::size_t kept =
                isLast && place.offset == BlockSize ? BlockSize : BlockSize / 2;
            const auto middle = values.begin() + static_cast<std::ptrdiff_t>(kept);
            std::vector<T> tail(std::make_move_iterator(middle),
                                std::make_move_iterator(values.end()));
            values.erase(middle, values.end());
            Block* const added = add(place.block->number + 1, std::move(tail));
            return place.offset < kept ? place : Place{added, place.offset - kept};
        }
        Block* add(std::size_t number, std::vector<T> values)
        {
            auto block = std::make_unique<Block>(Block{std::move(values), number});
            block->values.reserve(BlockSize);
            Block* const added = block.get();
            for (const T& value : added->values)
                finder.enter(keyOf(value), added);
            blocks.insert(blocks.begin() + static_cast<std::ptrdiff_t>(number), std::move(block));
            sumUp();
            return added;
        }
        void sumUp()
        {
            std::vector<std::size_t> sizes;
            for (const auto& block : blocks) {
                block->number = sizes.size();
                sizes.push_back(block->values.size());
            }
            sums.assign(std::move(sizes));
        }
    };

    // The values of a block; null behind the last one, and for a row without values.
    const std::vector<T>* valuesOf(std::size_t block) const
    {
        if (m_blocks != nullptr)
            return block < m_blocks->blocks.size() ? &m_blocks->blocks[block]->values : nullptr;
        return block == 0 && !m_values.empty() ? &m_values : nullptr;
    }

    std::vector<T> m_values; // while they are few
    std::unique_ptr<Blocks> m_blocks;
};

} // namespace Orv::Data
