// Lists: an ordered sequence of owned children.
#pragma once

#include "data/container.h"
#include <QtGlobal>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace Orv::Core {
class ManipulatorListBase;
} // namespace Orv::Core

namespace Orv::Data {

template <class T>
class Row;

// A growing array of pointers behind one word: most lists of a document are empty or short. What is
// inserted or erased moves the shorter side alone. An array that is edited far from both of its ends
// becomes a row of blocks, and stays one. Owns its storage, not the objects. Throws
// std::length_error beyond 2^32 - 1.
class PointerArray
{
public:
    PointerArray() = default;
    PointerArray(const PointerArray&) = delete;
    PointerArray& operator=(const PointerArray&) = delete;
    ~PointerArray();

    std::size_t size() const { return m_block == nullptr ? 0 : m_block->size; }
    BaseObject* operator[](std::size_t index) const
    {
        Q_ASSERT(index < size());
        return m_block->isRow == 0 ? items()[index] : inRow(index);
    }

    // Puts `count` pointers before the item at `index`, which is at most size().
    void insert(std::size_t index, BaseObject* const* pointers, std::size_t count);
    // Forgets `count` items from `index` on.
    void erase(std::size_t index, std::size_t count);
    // Shifts one item to the place `to`; those between close up.
    void move(std::size_t from, std::size_t to);
    // Returns the place of a pointer, size() if it is not there. The pointers differ from each
    // other. Makes a row of blocks of the array if the place is far from both ends.
    std::size_t indexOf(const BaseObject* pointer);
    // Makes one array of a row of blocks, and returns where it begins. Null without items.
    BaseObject* const* flatten();

private:
    struct Block // in front of the items, or of the pointer to their row
    {
        std::uint32_t size;
        std::uint32_t capacity;
        std::uint32_t begin; // places in front of the first item
        std::uint32_t isRow;
    };
    // In bytes, of a block with its places.
    static std::size_t sizeOf(std::size_t capacity)
    {
        return sizeof(Block) + capacity * sizeof(BaseObject*);
    }
    BaseObject** items() const
    {
        return reinterpret_cast<BaseObject**>(m_block + 1) + m_block->begin;
    }
    BaseObject* inRow(std::size_t index) const;
    Row<BaseObject*>& row() const { return **reinterpret_cast<Row<BaseObject*>**>(m_block + 1); }
    // Returns true if the array is a row of blocks, made if the place is far from both ends.
    bool isRowAt(std::size_t index);
    void becomeRow();
    void reserve(std::size_t capacity);

    Block* m_block = nullptr;
};

// The list without its item type. Positions take constant time, and logarithmic time in a long list
// that has been edited far from its ends.
class ContainerListBase : public Container
{
public:
    ContainerListBase() = default;
    ~ContainerListBase() override { ContainerListBase::clear(); }

    ObjectKind kind() const override { return ObjectKind::List; }

    using Container::childAt;
    std::size_t childCount() const override { return m_items.size(); }
    const BaseObject* childAt(std::size_t index) const override
    {
        Q_ASSERT(index < m_items.size());
        return m_items[index];
    }
    bool isModified() const override { return !isEmpty(); }
    bool isEmpty() const { return m_items.size() == 0; }
    std::size_t size() const { return m_items.size(); }

    // The three below neither record nor notify: only for a tree that is being built and has no
    // listeners. `child` must be of the list's item type.
    void clear();
    void pushBack(std::unique_ptr<BaseObject> child);

    // Returns a new child of the class with that element name, without parent; null if the
    // list has no such class.
    virtual std::unique_ptr<BaseObject> createChild(std::string_view elementName) const = 0;

    // The place of `child`, size() if it is none of the items. Takes logarithmic time in the long
    // run. Not to be called by two threads at once.
    std::size_t indexOf(const BaseObject& child) const;

private:
    friend class Orv::Core::ManipulatorListBase;
    void insertOwned(std::size_t index, const std::vector<BaseObject*>& items);
    // Hands the items over to the caller, their parent cleared.
    std::vector<BaseObject*> takeOwned(std::size_t index, std::size_t count);

    void moveOwned(std::size_t from, std::size_t to) { m_items.move(from, to); }

    mutable PointerArray m_items; // indexOf() changes its form
};

// Items of the common base type T: one class, or BaseObject or ContentObjectBase for several.
template <class T>
class ContainerList : public ContainerListBase
{
public:
    using ItemType = T;

    // A read-only walk over typed items. It goes by position: an insertion, removal or move at or
    // before its place makes it invalid. The items themselves never move in memory.
    class ConstIterator
    {
    public:
        using value_type = T;
        using reference = const T&;
        using pointer = const T*;
        using difference_type = std::ptrdiff_t;
        using iterator_category = std::forward_iterator_tag;

        ConstIterator() = default;
        ConstIterator(const ContainerListBase& list, std::size_t index)
            : m_list(&list), m_index(index)
        {}
        const T& operator*() const { return static_cast<const T&>(*m_list->childAt(m_index)); }
        const T* operator->() const { return &**this; }
        ConstIterator& operator++()
        {
            ++m_index;
            return *this;
        }
        ConstIterator operator++(int)
        {
            const ConstIterator former = *this;
            ++m_index;
            return former;
        }
        friend bool operator==(const ConstIterator& a, const ConstIterator& b)
        {
            return a.m_index == b.m_index;
        }
        friend bool operator!=(const ConstIterator& a, const ConstIterator& b) { return !(a == b); }
        std::size_t index() const { return m_index; }

    private:
        const ContainerListBase* m_list = nullptr;
        std::size_t m_index = 0;
    };

    ConstIterator begin() const { return ConstIterator(*this, 0); }
    ConstIterator end() const { return ConstIterator(*this, size()); }
    // The list must not be empty.
    const T& front() const { return at(0); }
    const T& back() const { return at(size() - 1); }
    // `index` is below size().
    const T& at(std::size_t index) const { return static_cast<const T&>(*childAt(index)); }
    T& at(std::size_t index) { return static_cast<T&>(*childAt(index)); }
};

} // namespace Orv::Data
