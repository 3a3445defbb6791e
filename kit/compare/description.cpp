#include "compare/itemkind.h"
#include "compare/version.h"
#include "compare/words.h"
#include "contentplace.h"
#include "data/containerstruct.h"
#include "data/containerunion.h"
#include "data/content/package.h"
#include "findinglist.h"
#include "ksx/core/contentwalk.h"
#include "ksx/kit/comparison.h"
#include "packageparts.h"

namespace Ksx::Kit {

namespace {

namespace Doc = Data::Content;
using Orv::Data::BaseObject;
using Orv::Data::ContainerListBase;
using Orv::Data::ContainerStructBase;
using Orv::Data::ContainerUnionBase;
using Orv::Data::ObjectKind;

// Writes the facts of a package as lines.
class Description
{
public:
    Description(const ComparisonOptions& options, const QDir& folder)
        : m_options(options), m_folder(folder)
    {}

    QStringList run(const Doc::Package& package)
    {
        addMembers({QStringLiteral("package"), {}}, package, {});
        addItems(QStringLiteral("package"), package.dependencies());
        Core::visitContent(package, [this](const Doc::ContentObjectBase& object) {
            const QString phrase = QStringLiteral("%1 %2").arg(wordFor(object), placeOf(&object));
            m_lines.append(phrase);
            addMembers({phrase, {}}, object, kindOf(object).name);
        });
        return std::move(m_lines);
    }

private:
    // An item, and the elements that lead from it to what is described.
    struct Subject
    {
        QString item;
        QString members;
    };

    void addMembers(const Subject& subject, const ContainerStructBase& structure,
                    std::string_view name)
    {
        const auto members = structure.members();
        for (std::size_t i = 0; i < members.count; ++i) {
            const BaseObject& member = *members.object(i);
            const Orv::Data::ObjectMeta& meta = member.getMeta();
            if (member.isModified() && isFact(meta) && meta.name != name &&
                (m_options.withLayout || !isLayout(meta)))
                addMember(subject, member);
        }
    }

    void addMember(const Subject& subject, const BaseObject& member)
    {
        const QString element = latinText(member.getMeta().name);
        const Subject inner{subject.item, subject.members + QStringLiteral(", ") + element};
        switch (member.kind()) {
        case ObjectKind::Attribute:
            // The one value of a member needs no name.
            addLine(subject.item + (element == QLatin1String("value") && !subject.members.isEmpty()
                                        ? subject.members
                                        : inner.members),
                    valueText(member, m_folder));
            break;
        case ObjectKind::List:
            addItems(subject.item, static_cast<const ContainerListBase&>(member));
            break;
        case ObjectKind::Struct:
            addMembers(inner, static_cast<const ContainerStructBase&>(member), {});
            break;
        case ObjectKind::Union:
            addMembers(inner,
                       static_cast<const ContainerStructBase&>(
                           *static_cast<const ContainerUnionBase&>(member).get()),
                       {});
            break;
        }
    }

    void addItems(const QString& owner, const ContainerListBase& list)
    {
        for (std::size_t i = 0; i < list.size(); ++i) {
            const BaseObject& item = *list.childAt(i);
            const QString phrase = phraseFor(item, m_folder);
            const QString line = QStringLiteral("%1, %2").arg(owner, phrase);
            if (item.getMeta().name == "connexion") {
                addLine(line, summaryOf(item, m_folder));
                continue;
            }
            m_lines.append(line);
            // The lines of what is in the item would all repeat a long name.
            addMembers({QStringLiteral("%1, %2").arg(owner, cutText(phrase)), {}},
                       static_cast<const ContainerStructBase&>(item), kindOf(item).name);
        }
    }

    // A text of several lines is one line still.
    void addLine(const QString& subject, QString text)
    {
        text.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
            .replace(QLatin1Char('\n'), QLatin1String("\\n"))
            .replace(QLatin1Char('\r'), QLatin1String("\\r"));
        m_lines.append(QStringLiteral("%1 = %2").arg(subject, text));
    }

    const ComparisonOptions& m_options;
    const QDir& m_folder;
    QStringList m_lines;
};

} // namespace

std::optional<QStringList> describePackage(const PackageVersion& version,
                                           const ComparisonOptions& options, QString& reason)
{
    const QDir folder = folderOf(version);
    const auto package = openVersion(version, folder, reason);
    if (package == nullptr)
        return std::nullopt;
    return Description(options, folder).run(*package);
}

} // namespace Ksx::Kit
