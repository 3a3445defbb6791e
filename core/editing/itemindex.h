// What is known of the items of a list, kept in step with the list.
#pragma once

#include "data/containerlist.h"
#include "data/datamessage.h"
#include "data/densemap.h"
#include "data/shadowobject.h"
#include "ksx/core/follow.h"
#include "ksx/core/listenerof.h"
#include "ksx/core/stage.h"
#include <cstdint>
#include <iterator>

namespace Ksx::Core {

// Has a record for each item of the list that it is attached to, and looks again only at items that
// a change has touched. A `Follower` derives from this, calls refill() when it is made, and says
// what to do in three functions:
//     static Record read(const Item&);          // what is known of an item
//     void enter(const Item&, const Record&);   // an item has come, or has another record now
//     void leave(const Item*, const Record&);   // the former record, of an item that may have died
template <class Follower, class Item, class Record, std::uint16_t When = Stage::Mirror>
class ItemFollower : public Orv::Core::ListenerSimple<When, ListChanges>
{
public:
    using List = Orv::Data::ContainerList<Item>;

    void deliver(const Orv::Data::DataMessage& message) override
    {
        const auto* list = static_cast<const List*>(message.object.get());
        if (list == nullptr)
            return;
        for (const Orv::Data::TouchedChild& touched : message.touched)
            follow(touched, *list);
        settle(*list);
    }

    // Returns true if an index of the list can be right: in a live document, of whose changes
    // everybody has been told.
    static bool isSettled(const List& list)
    {
        const Orv::Data::ShadowObject* const shadow = list.shadow();
        return isAttached(list) && (shadow == nullptr || !shadow->hasPending());
    }

protected:
    // Looks at an item that a change has touched.
    void follow(const Orv::Data::TouchedChild& touched, const List& list)
    {
        const auto* const item = static_cast<const Item*>(touched.object.get());
        const bool isThere = item != nullptr && item->getParent() == &list;
        const auto known = m_records.find(touched.address);
        if (known == m_records.end()) {
            if (isThere)
                add(*item);
        } else if (!isThere) {
            drop(known);
        } else if (Record present = Follower::read(*item); !(present == known->value)) {
            self().leave(item, known->value);
            known->value = std::move(present);
            self().enter(*item, known->value);
        }
    }
    // Ends a row of items that were followed.
    void settle(const List& list)
    {
        // One that was made in an edit which was refused afterwards knows what is not there.
        if (m_records.size() != list.size())
            refill(list);
    }
    void refill(const List& list)
    {
        while (!m_records.empty())
            drop(std::prev(m_records.end()));
        for (const Item& item : list)
            add(item);
    }

private:
    using Records = Orv::Data::DenseMap<const Orv::Data::BaseObject*, Record>;

    Follower& self() { return static_cast<Follower&>(*this); }
    void add(const Item& item)
    {
        const auto added = m_records.emplace(&item, Follower::read(item)).first;
        self().enter(item, added->value);
    }
    void drop(typename Records::iterator place)
    {
        self().leave(static_cast<const Item*>(place->key()), place->value);
        m_records.erase(place);
    }

    Records m_records;
};

// Base of the followers that the shadows of their lists own.
template <class Index, class Item, class Record>
class ItemIndex : public ItemFollower<Index, Item, Record>
{
public:
    using List = Orv::Data::ContainerList<Item>;

    // Returns the index of a list, made if there is none, in time with the length of the list.
    // Returns null for a list that is not settled.
    static Index* of(const List& list)
    {
        return ItemIndex::isSettled(list) ? &listenerOf<Index>(list) : nullptr;
    }
    bool isOwnedByShadow() const final { return true; }
};

} // namespace Ksx::Core
