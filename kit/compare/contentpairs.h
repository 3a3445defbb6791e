// Finds the objects of the content of two packages that are the same object.
#pragma once

#include "compare/alignment.h"
#include <string>
#include <unordered_map>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Kit {

class Translation;

// The objects of the content of two packages, owners first, and their partners. The packages must
// outlive it.
class ContentPairs
{
public:
    ContentPairs(const Data::Content::Package& first, const Data::Content::Package& second);

    const Items& first() const { return m_first; }
    const Items& second() const { return m_second; }
    const Alignment& alignment() const { return m_alignment; }

    // Returns the partner of an object of either package. Returns null if there is none, and for
    // null.
    const Orv::Data::BaseObject* partnerOf(const Orv::Data::BaseObject* object) const;

    // Tells the translation of the second package the numbers of dependencies and the paths that
    // are others in the first one.
    void addTo(Translation& translation) const;

private:
    const Data::Content::Package& m_firstPackage;
    const Data::Content::Package& m_secondPackage;
    Items m_first;
    Items m_second;
    Alignment m_alignment;
    std::unordered_map<const Orv::Data::BaseObject*, const Orv::Data::BaseObject*> m_partners;
};

// Returns the identifiers that lead to an object of the content, with "/" in between.
std::string pathOf(const Orv::Data::BaseObject& object);

} // namespace Ksx::Kit
