// Where a walk over a package is.
#pragma once

#include "ksx/kit/comparison.h"
#include <QDir>
#include <string_view>
#include <vector>

namespace Orv::Data {
class BaseObject;
} // namespace Orv::Data

namespace Ksx::Kit {

// The objects and members that a walk has entered and not left.
class Whereabouts
{
public:
    // Begins at the package. Both must outlive the object.
    Whereabouts(const Orv::Data::BaseObject& package, const QDir& folder);

    // An item of a list or of the content that the walk is in until the object dies.
    class Item
    {
    public:
        Item(Whereabouts& walk, const Orv::Data::BaseObject& item);
        Item(const Item&) = delete;
        Item& operator=(const Item&) = delete;
        ~Item();

    private:
        Whereabouts& m_walk;
        QStringList m_outerMembers;
    };

    // The same for a member of the item.
    class Member
    {
    public:
        Member(Whereabouts& walk, std::string_view element);
        Member(const Member&) = delete;
        Member& operator=(const Member&) = delete;
        ~Member() { m_walk.m_members.removeLast(); }

    private:
        Whereabouts& m_walk;
    };

    // Returns the innermost item, which is the package at first.
    const Orv::Data::BaseObject& item() const { return *m_items.back().object; }
    // Returns where the walk is.
    Location location() const;
    // Returns the location of an item that the walk has not entered.
    Location locationOf(const Orv::Data::BaseObject& item) const;

private:
    struct Entered
    {
        const Orv::Data::BaseObject* object;
        QString phrase = {}; // once somebody has asked for it, since it may be long
    };

    void addOuter(std::size_t count, Location& location) const;

    const QDir& m_folder;
    mutable std::vector<Entered> m_items;
    QStringList m_members; // of the innermost item
};

} // namespace Ksx::Kit
