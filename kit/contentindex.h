// Finds objects of a package by the identifiers that lead to them.
#pragma once

#include "data/content/contentobjectbase.h"
#include <map>
#include <string_view>
#include <utility>
#include <vector>

namespace Ksx::Core {
class DataPath;
} // namespace Ksx::Core

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Kit {

// The objects of the content of a package, which must outlive the index and not change. A path is
// found in logarithmic time for each segment, where DataPath::resolve() goes through all items.
class ContentIndex
{
public:
    explicit ContentIndex(const Data::Content::Package& package);

    // Returns the object of the segments, or the package. Returns null if there is none.
    const Orv::Data::BaseObject* objectOf(const Core::DataPath& path) const;
    // Returns whether the path leads to an object, which may be inside of that of the segments.
    bool leadsSomewhere(const Core::DataPath& path) const;

private:
    const Data::Content::Package& m_package;
    // By the object that holds the content, and the identifier. The first of several wins.
    std::map<std::pair<const Orv::Data::BaseObject*, std::string_view>,
             const Data::Content::ContentObjectBase*>
        m_objects;
};

} // namespace Ksx::Kit
