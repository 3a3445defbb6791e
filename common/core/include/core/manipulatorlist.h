// Writes the lists of a document.
#pragma once

#include "core/manipulatorbase.h"
#include "core/manipulatorof.h"
#include "data/containerlist.h"
#include <QtGlobal>
#include <cstddef>
#include <iterator>
#include <memory>
#include <vector>

namespace Orv::Core {

// A list whose item type is not known. Positions beyond the list throw ExceptionOutOfBounds, before
// anything is changed. Items that leave the list are owned by the history.
class ManipulatorListBase : public ManipulatorBase
{
public:
    using ManipulatorBase::ManipulatorBase;
    const Data::ContainerListBase* list() const
    {
        return static_cast<const Data::ContainerListBase*>(getData());
    }

    // Nothing at all when the list is empty already.
    void clear();
    void pushBack(std::unique_ptr<Data::BaseObject> item);
    void erase(std::size_t index, std::size_t count);
    // Erases an item. Does nothing, and returns false, for null and for an object of another list.
    bool erase(const Data::BaseObject* item);
    // Moves the item at `index` to `index + offset`. Does nothing if `offset` is 0.
    void move(std::size_t index, std::ptrdiff_t offset);
    // Moves the item at `order[i]` to the place i, for each i. Nothing at all when it is there. Also
    // throws if the order does not name each place once.
    void reorder(const std::vector<std::size_t>& order);
    // Puts the items before the one at `index`. On a throw they are deleted.
    void insert(std::size_t index, std::vector<std::unique_ptr<Data::BaseObject>> items);
    void insert(std::size_t index, std::unique_ptr<Data::BaseObject> item);
};

// Items of the common base type T.
template <class T>
class ManipulatorList final : public ManipulatorListBase
{
public:
    using DataType = Data::ContainerList<T>;
    using ItemManipulator = typename ManipulatorOf<T>::type;

    // A place in the list that survives insertions, moves and erasures elsewhere: it goes by the
    // item and looks again for its position when that has shifted. At the end it holds no item, and
    // it comes to the end when its item is erased. What it leads to is a manipulator, made anew at
    // each access.
    class iterator
    {
    public:
        using value_type = ItemManipulator;
        using reference = ItemManipulator;
        using pointer = void;
        using difference_type = std::ptrdiff_t;
        using iterator_category = std::forward_iterator_tag;

        iterator() = default;
        iterator(const ManipulatorList& list, std::size_t index)
            : m_list(list.get()), m_context(&list.context()), m_hint(index), m_item(itemAt(index))
        {}
        // The iterator must not be at the end.
        ItemManipulator operator*() const { return ItemManipulator(*m_item.get(), *m_context); }
        iterator& operator++()
        {
            m_hint = index() + 1;
            m_item.reset(itemAt(m_hint));
            return *this;
        }
        iterator operator++(int)
        {
            const iterator former = *this;
            ++*this;
            return former;
        }
        // The present position of the item, the size of the list at the end.
        std::size_t index() const
        {
            const T* item = m_item.get();
            if (item == nullptr)
                return m_list->size();
            if (itemAt(m_hint) != item)
                m_hint = m_list->indexOf(*item);
            return m_hint;
        }
        friend bool operator==(const iterator& a, const iterator& b)
        {
            return a.m_item == b.m_item;
        }
        friend bool operator!=(const iterator& a, const iterator& b) { return !(a == b); }

    private:
        const T* itemAt(std::size_t index) const
        {
            return index < m_list->size() ? &m_list->at(index) : nullptr;
        }

        Data::DataPointerBox<DataType> m_list;
        ManipulatorContext* m_context = nullptr;
        mutable std::size_t m_hint = 0;
        Data::DataPointerBox<T> m_item;
    };

    ManipulatorList(const DataType& list, ManipulatorContext& context)
        : ManipulatorListBase(list, context)
    {}
    std::unique_ptr<ManipulatorFactoryBase> createFactory() const override
    {
        return std::make_unique<ManipulatorFactory<ManipulatorList>>();
    }
    const DataType* get() const { return static_cast<const DataType*>(getData()); }

    iterator begin() const { return iterator(*this, 0); }
    iterator end() const { return iterator(*this, get()->size()); }
    // `index` is below the size.
    ItemManipulator at(std::size_t index) const
    {
        return ItemManipulator(get()->at(index), context());
    }

    using ManipulatorListBase::erase;
    using ManipulatorListBase::insert;
    // Inserts before `position`; answers the iterator behind the new item.
    iterator insert(const iterator& position, std::unique_ptr<T> item)
    {
        const std::size_t index = position.index();
        insert(index, std::unique_ptr<Data::BaseObject>(std::move(item)));
        return iterator(*this, index + 1);
    }
    // Does nothing, and returns false, once the item has died or has left the list.
    bool erase(const Data::DataPointerBox<T>& item) { return erase(item.get()); }
    // Erases [first, last); answers the iterator behind the range.
    iterator erase(const iterator& first, const iterator& last)
    {
        const std::size_t index = first.index();
        erase(index, last.index() - index);
        return iterator(*this, index);
    }
    // Moves [first, last), in its order, before `position`, which lies outside the range.
    void splice(const iterator& position, const iterator& first, const iterator& last)
    {
        const std::size_t from = first.index();
        const std::size_t count = last.index() - from;
        const std::size_t to = position.index();
        const bool forward = to > from;
        Q_ASSERT(!forward || to >= from + count);
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t source = forward ? from : from + i;
            const std::size_t target = forward ? to - 1 : to + i;
            move(source, static_cast<std::ptrdiff_t>(target) - static_cast<std::ptrdiff_t>(source));
        }
    }
};

} // namespace Orv::Core
