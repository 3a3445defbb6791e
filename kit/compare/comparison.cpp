#include "ksx/kit/comparison.h"

#include "compare/contentpairs.h"
#include "compare/objectcomparison.h"
#include "compare/version.h"
#include "contentplace.h"
#include "data/content/package.h"

namespace Ksx::Kit {

namespace {

namespace Doc = Data::Content;
using Orv::Data::BaseObject;

// Compares two packages.
class Comparison
{
public:
    Comparison(const Doc::Package& first, const Doc::Package& second,
               const ComparisonOptions& options, const QDir& folder)
        : m_first(first), m_second(second), m_content(first, second), m_walk(second, folder),
          m_objects(m_translation, folder, options.withLayout, m_walk, m_differences)
    {
        m_content.addTo(m_translation);
    }

    std::vector<Difference> run()
    {
        m_objects.compareItem(m_first, m_second);
        m_objects.compareLists(m_first.dependencies(), m_second.dependencies());
        const Alignment& alignment = m_content.alignment();
        for (std::size_t i = 0; i < m_content.first().size(); ++i) {
            const std::size_t partner = alignment.inSecond[i];
            if (partner != Alignment::None)
                compareContent(*m_content.first()[i], *m_content.second()[partner]);
            else
                addContent(ChangeKind::Removed, *m_content.first()[i]);
        }
        for (std::size_t i = 0; i < m_content.second().size(); ++i)
            if (alignment.inFirst[i] == Alignment::None)
                addContent(ChangeKind::Added, *m_content.second()[i]);
        return std::move(m_differences);
    }

private:
    // What is in an object that is added or removed goes with it.
    void addContent(ChangeKind kind, const BaseObject& object)
    {
        const BaseObject* const owner = contentOwnerOf(object);
        if (owner == nullptr || m_content.partnerOf(owner) != nullptr)
            m_objects.addItem(kind, object);
    }

    void compareContent(const BaseObject& first, const BaseObject& second)
    {
        const Whereabouts::Item inside(m_walk, second);
        if (m_content.partnerOf(contentOwnerOf(second)) != contentOwnerOf(first))
            m_objects.add(ChangeKind::Moved, placeOf(&first), placeOf(&second));
        m_objects.compareItem(first, second);
    }

    const Doc::Package& m_first;
    const Doc::Package& m_second;
    const ContentPairs m_content;
    Translation m_translation; // of the second package
    std::vector<Difference> m_differences;
    Whereabouts m_walk; // in the second package
    ObjectComparison m_objects;
};

} // namespace

QString wordOf(ChangeKind kind)
{
    switch (kind) {
    case ChangeKind::Added:
        return QStringLiteral("added");
    case ChangeKind::Removed:
        return QStringLiteral("removed");
    case ChangeKind::Moved:
        return QStringLiteral("moved");
    case ChangeKind::Renamed:
        return QStringLiteral("renamed");
    default:
        return QStringLiteral("changed");
    }
}

std::optional<std::vector<Difference>> comparePackages(const PackageVersion& first,
                                                       const PackageVersion& second,
                                                       const ComparisonOptions& options,
                                                       QString& file, QString& reason)
{
    const QDir folder = folderOf(first);
    file = first.file;
    const auto firstPackage = openVersion(first, folder, reason);
    if (firstPackage == nullptr)
        return std::nullopt;
    file = second.file;
    const auto secondPackage = openVersion(second, folder, reason);
    if (secondPackage == nullptr)
        return std::nullopt;
    return Comparison(*firstPackage, *secondPackage, options, folder).run();
}

} // namespace Ksx::Kit
