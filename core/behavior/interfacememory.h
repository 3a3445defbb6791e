// What the inputs or outputs of a graph or a function were, to tell what has become of them.
#pragma once

#include "behavior/interfacediff.h"
#include "data/datamessage.h"
#include "data/densemap.h"
#include <functional>
#include <list>
#include <optional>
#include <vector>

namespace Orv::Data {
class ContainerListBase;
} // namespace Orv::Data

namespace Ksx::Core::Behavior {

// Remembers the items of one list. Looks only at the items that a change has touched, from the
// second change on: most lists are never edited, and theirs are remembered in little space.
class InterfaceMemory
{
public:
    using List = Orv::Data::ContainerListBase;
    // Returns what an item is now; its place is not looked at.
    using Describe = std::function<InterfaceItem(const Orv::Data::BaseObject&)>;

    InterfaceMemory(const List& list, Describe describe);

    // Returns what has become of the items since the last time, and remembers what they are now.
    // The message is that of the list; null looks at all items.
    InterfaceDiff follow(const List& list, const Orv::Data::DataMessage* message);
    // The same for items of these uids alone. Of what comes and goes the list's message tells.
    InterfaceDiff follow(const List& list, const std::vector<Uid>& uids);

private:
    struct Entry
    {
        Orv::Data::DataPointerBox<Orv::Data::BaseObject> item;
        InterfaceRecord record;
    };
    using Entries = std::list<Entry>; // in the order of the list
    struct Changes;

    bool collect(const List& list, const Orv::Data::DataMessage& message, Changes& changes) const;
    bool collectArrivals(const List& list, const Orv::Data::ChangeRuns& runs,
                         Changes& changes) const;
    void collectChild(const List& list, const Orv::Data::TouchedChild& touched,
                      Changes& changes) const;
    void compare(const Orv::Data::BaseObject& item, const Entry& entry, Changes& changes) const;
    bool isPlain(const Changes& changes) const;
    InterfaceDiff apply(const List& list, const Changes& changes);
    InterfaceDiff followAll(const List& list);
    void insert(Entries::iterator place, const Orv::Data::BaseObject& item,
                const InterfaceItem& described);
    InterfaceItems describeAll(const List& list) const;

    Describe m_describe;
    InterfaceRecords m_unsorted; // until the first change
    Entries m_entries;
    Orv::Data::DenseMap<const Orv::Data::BaseObject*, Entries::iterator> m_places;
    Orv::Data::DenseMap<Uid, Entries::iterator> m_byUid;
    bool m_isSorted = false;
    bool m_hasDuplicates = false; // of uids; such lists are looked at whole
};

// Returns what is remembered of an input. The object must be a ParamInput.
InterfaceItem describeInput(const Orv::Data::BaseObject& object);

} // namespace Ksx::Core::Behavior
