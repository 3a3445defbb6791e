// Which data paths lead to an object of content.
#pragma once

#include "data/datapointerbox.h"
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace Orv::Data {
class BaseObject;
} // namespace Orv::Data

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core::Behavior {

// Answers for many paths what resolveObjectUrl() answers for one, without looking for the object
// each time. Made for one edit: it must not outlive the next change of the content.
class PathTarget
{
public:
    explicit PathTarget(const Orv::Data::BaseObject& object);

    // Returns true if the path that a text of `from` holds leads to the object.
    bool isNamedBy(std::string_view text, const Data::Content::Package& from);

private:
    // The package of the object and the identifiers down to it; none if no path leads there.
    const Data::Content::Package* m_package = nullptr;
    std::vector<std::string> m_segments;
    // The packages whose paths lead into the object's, by the text of their dependency.
    std::map<std::pair<const Data::Content::Package*, std::string>, bool> m_known;
};

} // namespace Ksx::Core::Behavior
