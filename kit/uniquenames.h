// Finds objects of a list that share a uid or an identifier.
#pragma once

#include "findinglist.h"
#include "packageparts.h"
#include <set>
#include <string>

namespace Ksx::Kit {

// Adds each uid that a former item of the list has. `words` names the items, in plural.
template <class Items>
void checkUids(const Items& items, const QString& place, const char* words, FindingList& findings)
{
    std::set<unsigned> known;
    for (const auto& item : items)
        if (!known.insert(item.uid().get()).second)
            findings.add(FindingCode::DoubleUid, place,
                         QStringLiteral("Two %1 have the uid %2")
                             .arg(QLatin1String(words))
                             .arg(item.uid().get()));
}

// The same for identifiers.
template <class Items>
void checkIdentifiers(const Items& items, const QString& place, const char* words,
                      FindingList& findings)
{
    std::set<std::string> known;
    for (const auto& item : items)
        if (!known.insert(item.identifier().get()).second)
            findings.add(FindingCode::DoubleIdentifier, place,
                         QStringLiteral("Two %1 are called '%2'")
                             .arg(QLatin1String(words), latinText(item.identifier().get())));
}

} // namespace Ksx::Kit
