#include "compare/packagecomparison.h"

#include "contentplace.h"
#include "data/content/package.h"

namespace Ksx::Kit {

namespace Doc = Data::Content;
using Orv::Data::BaseObject;

namespace {

// Returns whether a package stands for a file that is not there. Each file has a version.
bool isNothing(const Doc::Package& package)
{
    return package.formatVersion().get().empty();
}

} // namespace

PackageComparison::PackageComparison(const Doc::Package& first, const Doc::Package& second,
                                     const ComparisonOptions& options, const QDir& folder)
    : m_first(first), m_second(second), m_content(first, second), m_walk(second, folder),
      m_objects(m_translation, folder, options.withLayout ? LayoutFacts::All : LayoutFacts::None,
                m_walk, m_differences)
{
    m_content.addTo(m_translation);
}

std::vector<Difference> PackageComparison::run()
{
    if (isNothing(m_first) == isNothing(m_second)) {
        m_objects.compareItem(m_first, m_second);
        m_objects.compareLists(m_first.dependencies(), m_second.dependencies());
    } else if (isNothing(m_first)) {
        m_objects.addItem(ChangeKind::Added, m_second);
    } else {
        m_objects.addItem(ChangeKind::Removed, m_first);
    }
    for (const BaseObject* const object : m_content.first()) {
        const BaseObject* const partner = m_content.partnerOf(object);
        if (partner != nullptr)
            compareContent(*object, *partner);
        else
            addContent(ChangeKind::Removed, *object);
    }
    for (const BaseObject* const object : m_content.second())
        if (m_content.partnerOf(object) == nullptr)
            addContent(ChangeKind::Added, *object);
    return std::move(m_differences);
}

// What is in an object that is added or removed goes with it.
void PackageComparison::addContent(ChangeKind kind, const BaseObject& object)
{
    const BaseObject* const owner = contentOwnerOf(object);
    if (owner == nullptr || m_content.partnerOf(owner) != nullptr)
        m_objects.addItem(kind, object);
}

// The owner is null for what is in the package itself.
bool PackageComparison::isSameOwner(const BaseObject* first, const BaseObject* second) const
{
    if (first == nullptr || second == nullptr)
        return first == second;
    return m_content.partnerOf(second) == first;
}

void PackageComparison::compareContent(const BaseObject& first, const BaseObject& second)
{
    const Whereabouts::Item inside(m_walk, second);
    if (!isSameOwner(contentOwnerOf(first), contentOwnerOf(second)))
        m_objects.add(ChangeKind::Moved, placeOf(&first), placeOf(&second));
    m_objects.compareItem(first, second);
}

} // namespace Ksx::Kit
