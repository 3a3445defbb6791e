#include "updating/oblformatupdater3962n2.h"

#include "updating/dompath.h"
#include <QDomDocument>

namespace Ksx::Core {

// Files before build 3962 had the names of the configuration elements the other way round.
//   <configuration><name v="default"/><uid v="7"/><configurations>
//     <configuration><name v="one"/><uid v="8"/><configurations/></configuration>
//   </configurations></configuration>
// becomes
//   <configurations><name v="default"/><uid v="7"/><configuration>
//     <configurations><name v="one"/><uid v="8"/><configuration/></configurations>
//   </configuration></configurations>
// Every `configurations` inside is renamed, at any depth, and every `configuration` that is an item
// of one; any other `configuration` inside is left alone.
OBLFormatUpdater::Elements OBLFormatUpdater3962n2::find(const QDomDocument& document,
                                                        const DomIndex&) const
{
    return elementsAt(document, QStringLiteral("/package/configuration"));
}

std::optional<int> OBLFormatUpdater3962n2::change(QDomDocument& /*document*/,
                                                  const Elements& found) const
{
    const QString singular = QStringLiteral("configuration");
    const QString plural = QStringLiteral("configurations");
    int count = 0;
    const auto rename = [&count](Elements elements, const QString& name) {
        for (QDomElement& element : elements) {
            element.setTagName(name);
            ++count;
        }
    };
    for (const QDomElement& outer : found) {
        const Elements lists = descendantsOf(outer, plural);
        Elements items;
        for (const QDomElement& list : lists)
            for (QDomElement item = list.firstChildElement(singular); !item.isNull();
                 item = item.nextSiblingElement(singular))
                items.push_back(item);
        rename(lists, singular);
        rename(items, plural);
        rename({outer}, plural);
    }
    return count;
}

} // namespace Ksx::Core
