#include "behavior/interfacememory.h"

#include "data/containerlist.h"
#include "data/content/paraminput.h"
#include <QtGlobal>
#include <iterator>
#include <unordered_set>
#include <utility>

namespace Ksx::Core::Behavior {

using Orv::Data::BaseObject;
using Orv::Data::ChangeRun;
using Orv::Data::DataMessage;
using Orv::Data::RunKind;

// What a message tells, before any of it is remembered.
struct InterfaceMemory::Changes
{
    struct Arrival
    {
        const BaseObject* item;
        std::size_t place;
        InterfaceItem described;
    };
    struct Change
    {
        const BaseObject* item;
        InterfaceItem described;
    };
    std::vector<const BaseObject*> gone;
    std::vector<Change> changed;
    std::vector<Arrival> arrived;               // in the order of the list
    std::unordered_set<const BaseObject*> seen; // of the touched items
    std::size_t strangers = 0; // touched items of the list that nothing is remembered of
};

InterfaceMemory::InterfaceMemory(const List& list, Describe describe)
    : m_describe(std::move(describe))
{
    m_unsorted.reserve(list.size());
    for (std::size_t i = 0; i < list.size(); ++i)
        m_unsorted.push_back(recordOf(m_describe(*list.childAt(i))));
}

InterfaceDiff InterfaceMemory::follow(const List& list, const DataMessage* message)
{
    Changes changes;
    const bool isKnown = m_isSorted && !m_hasDuplicates && message != nullptr &&
                         collect(list, *message, changes) && isPlain(changes);
    return isKnown ? apply(list, changes) : followAll(list);
}

InterfaceDiff InterfaceMemory::follow(const List& list, const std::vector<Uid>& uids)
{
    if (!m_isSorted || m_hasDuplicates)
        return followAll(list);
    Changes changes;
    for (const Uid uid : uids) {
        const auto known = m_byUid.find(uid);
        const BaseObject* const item = known == m_byUid.end() ? nullptr : known->value->item.get();
        if (item != nullptr && item->getParent() == &list && changes.seen.insert(item).second)
            compare(*item, *known->value, changes);
    }
    return isPlain(changes) ? apply(list, changes) : followAll(list);
}

// False if the items have to be looked at all, since an order cannot be told by what has changed.
bool InterfaceMemory::collect(const List& list, const DataMessage& message, Changes& changes) const
{
    for (const Orv::Data::TouchedChild& touched : message.touched)
        if (changes.seen.insert(touched.address).second)
            collectChild(list, touched, changes);
    const std::size_t former = m_entries.size() - changes.gone.size();
    return collectArrivals(list, message.runs, changes) &&
           changes.strangers == changes.arrived.size() &&
           former + changes.arrived.size() == list.size();
}

void InterfaceMemory::collectChild(const List& list, const Orv::Data::TouchedChild& touched,
                                   Changes& changes) const
{
    const BaseObject* const item = touched.object.get();
    const bool isThere = item != nullptr && item->getParent() == &list;
    const auto known = m_places.find(touched.address);
    if (known == m_places.end())
        changes.strangers += isThere ? 1 : 0;
    else if (isThere)
        compare(*item, *known->value, changes);
    else
        changes.gone.push_back(touched.address);
}

void InterfaceMemory::compare(const BaseObject& item, const Entry& entry, Changes& changes) const
{
    InterfaceItem described = m_describe(item);
    if (!(recordOf(described) == entry.record))
        changes.changed.push_back({&item, std::move(described)});
}

bool InterfaceMemory::collectArrivals(const List& list, const Orv::Data::ChangeRuns& runs,
                                      Changes& changes) const
{
    std::size_t place = 0;
    for (const ChangeRun& run : runs.runs()) {
        if (run.link != 0)
            return false;
        for (std::size_t i = place; run.kind == RunKind::Inserted && i < place + run.count; ++i) {
            if (i >= list.size() || m_places.contains(list.childAt(i)))
                return false;
            changes.arrived.push_back({list.childAt(i), i, m_describe(*list.childAt(i))});
        }
        place += run.inNewList() ? run.count : 0;
    }
    return true;
}

// Can each item be looked at by itself? Not where one may be taken for another.
bool InterfaceMemory::isPlain(const Changes& changes) const
{
    std::unordered_set<std::size_t> formerIdentifiers;
    std::unordered_set<Uid> uids;
    for (const BaseObject* item : changes.gone)
        if (!formerIdentifiers.insert(m_places.at(item)->record.identifier).second)
            return false;
    const std::unordered_set<std::size_t> goneIdentifiers = formerIdentifiers;
    for (const Changes::Change& change : changes.changed) {
        const InterfaceRecord& former = m_places.at(change.item)->record;
        if (change.described.uid != former.uid ||
            !formerIdentifiers.insert(former.identifier).second)
            return false;
    }
    for (const Changes::Arrival& arrival : changes.arrived)
        if (m_byUid.contains(arrival.described.uid) || !uids.insert(arrival.described.uid).second ||
            goneIdentifiers.count(recordOf(arrival.described).identifier) != 0)
            return false;
    return true;
}

InterfaceDiff InterfaceMemory::apply(const List& list, const Changes& changes)
{
    std::vector<InterfaceDiff::Change> told;
    for (const BaseObject* item : changes.gone) {
        const auto place = m_places.find(item);
        told.push_back({place->value->record, std::nullopt});
        m_byUid.erase(place->value->record.uid);
        m_entries.erase(place->value);
        m_places.erase(place);
    }
    for (const Changes::Change& change : changes.changed) {
        InterfaceRecord& record = m_places.at(change.item)->record;
        told.push_back({record, change.described});
        record = recordOf(change.described);
    }
    for (const Changes::Arrival& arrival : changes.arrived) {
        const auto place = arrival.place == 0
                               ? m_entries.begin()
                               : std::next(m_places.at(list.childAt(arrival.place - 1)));
        insert(place, *arrival.item, arrival.described);
        told.push_back({std::nullopt, arrival.described, arrival.place});
    }
    return InterfaceDiff(told);
}

void InterfaceMemory::insert(Entries::iterator place, const BaseObject& item,
                             const InterfaceItem& described)
{
    const auto added = m_entries.insert(
        place, {Orv::Data::DataPointerBox<BaseObject>(&item), recordOf(described)});
    m_places.emplace(&item, added);
    m_hasDuplicates = !m_byUid.emplace(described.uid, added).second || m_hasDuplicates;
}

InterfaceDiff InterfaceMemory::followAll(const List& list)
{
    InterfaceRecords former = std::exchange(m_unsorted, {});
    for (const Entry& entry : m_entries)
        former.push_back(entry.record);
    m_entries.clear();
    m_places.clear();
    m_byUid.clear();
    m_hasDuplicates = false;
    m_isSorted = true;
    const InterfaceItems items = describeAll(list);
    for (std::size_t i = 0; i < list.size(); ++i)
        insert(m_entries.end(), *list.childAt(i), items[i]);
    return InterfaceDiff(former, items);
}

InterfaceItem describeInput(const BaseObject& object)
{
    Q_ASSERT(dynamic_cast<const Data::Content::ParamInput*>(&object) != nullptr);
    const auto& input = static_cast<const Data::Content::ParamInput&>(object);
    return {input.uid().get(), input.type().value().get(), input.identifier().get()};
}

InterfaceItems InterfaceMemory::describeAll(const List& list) const
{
    InterfaceItems items;
    items.reserve(list.size());
    for (std::size_t i = 0; i < list.size(); ++i)
        items.push_back(m_describe(*list.childAt(i)));
    return items;
}

} // namespace Ksx::Core::Behavior
