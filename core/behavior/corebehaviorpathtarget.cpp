#include "behavior/pathtarget.h"

#include "content/packageof.h"
#include "data/content/contentobjectbase.h"
#include "data/content/package.h"
#include "ksx/core/datapath.h"
#include "ksx/core/objecturl.h"
#include <algorithm>

namespace Ksx::Core::Behavior {

namespace {

using Data::Content::ContentInterface;
using Data::Content::Package;
using Orv::Data::BaseObject;

const std::string PathBegin = "pkg://";

// A path to a package, with the dependency of another path.
std::string packagePath(const std::string& dependency)
{
    return DataPath::withParameter(PathBegin, DataPathKey::Dependency, dependency);
}

bool isTyped(const DataPath& path)
{
    return path.parameter(DataPathKey::Type).has_value();
}

} // namespace

PathTarget::PathTarget(const BaseObject& object) : m_package(packageOf(object))
{
    std::string path;
    for (const BaseObject* at = &object; at != nullptr && at != m_package; at = at->getParent()) {
        const auto* content = dynamic_cast<const ContentInterface*>(at);
        if (content == nullptr)
            continue;
        m_segments.push_back(content->identifierAttribute().get());
        path.insert(0, '/' + m_segments.back());
    }
    std::reverse(m_segments.begin(), m_segments.end());
    // Of two objects with one identifier the first is meant, and an identifier can be such that it
    // cannot stand in a path.
    if (m_package != nullptr && DataPath(PathBegin + path).resolve(*m_package) != &object)
        m_package = nullptr;
}

bool PathTarget::isNamedBy(std::string_view text, const Package& from)
{
    if (m_package == nullptr || !DataPath::isDataPath(text))
        return false;
    const DataPath path(text);
    if (path.segments() != m_segments || isTyped(path))
        return false;
    const auto dependency = path.parameter(DataPathKey::Dependency);
    if (!dependency)
        return &from == m_package;
    const auto [known, isNew] = m_known.try_emplace({&from, *dependency}, false);
    if (isNew)
        known->second = resolveObjectUrl(packagePath(*dependency), from) == m_package;
    return known->second;
}

} // namespace Ksx::Core::Behavior
