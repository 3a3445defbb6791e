#include "compare/whereabouts.h"

#include "compare/words.h"
#include "contentplace.h"
#include "findinglist.h"
#include "packageparts.h"

namespace Ksx::Kit {

using Orv::Data::BaseObject;

namespace {

bool isPackage(const BaseObject& item)
{
    return item.getMeta().name == "package";
}

} // namespace

Whereabouts::Whereabouts(const BaseObject& package, const QDir& folder)
    : m_folder(folder), m_items{{&package}}
{}

Whereabouts::Item::Item(Whereabouts& walk, const BaseObject& item) : m_walk(walk)
{
    walk.m_items.push_back({&item});
    walk.m_members.swap(m_outerMembers);
}

Whereabouts::Item::~Item()
{
    m_walk.m_members.swap(m_outerMembers);
    m_walk.m_items.pop_back();
}

Whereabouts::Member::Member(Whereabouts& walk, std::string_view element) : m_walk(walk)
{
    walk.m_members.append(latinText(element));
}

// The object of the content and the package are in the place already.
void Whereabouts::addOuter(std::size_t count, Location& location) const
{
    for (std::size_t i = 0; i < count; ++i) {
        Entered& outer = m_items[i];
        if (isPackage(*outer.object) || contentObjectOf(outer.object) == outer.object)
            continue;
        if (outer.phrase.isEmpty())
            outer.phrase = cutText(phraseFor(*outer.object, m_folder));
        location.within.append(outer.phrase);
    }
}

Location Whereabouts::location() const
{
    Location location;
    addOuter(m_items.size() - 1, location);
    location.place = placeOf(&item());
    location.object = isPackage(item()) ? QStringLiteral("package") : wordFor(item());
    location.name = isPackage(item()) ? QString() : cutText(nameFor(item(), m_folder));
    QStringList members = m_members;
    // The one value of a member needs no name.
    if (members.size() > 1 && members.back() == QLatin1String("value"))
        members.removeLast();
    location.member = members.join(QLatin1Char('/'));
    return location;
}

Location Whereabouts::locationOf(const BaseObject& item) const
{
    Location location;
    addOuter(m_items.size(), location);
    location.place = placeOf(&item);
    location.object = wordFor(item);
    location.name = cutText(nameFor(item, m_folder));
    return location;
}

} // namespace Ksx::Kit
