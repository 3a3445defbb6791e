#include "ksx/core/oblformatupdater3962n2.h"

#include "ksx/core/dompath.h"
#include <QDomDocument>

namespace Ksx::Core {

// Files before build 3962 had the names of the configuration elements the other way round.
//   <configuration><name v="default"/><uid v="7"/><configurations/></configuration>
// becomes
//   <configurations><name v="default"/><uid v="7"/><configuration/></configurations>
// Every `configurations` inside is renamed, at any depth; a `configuration` inside is left alone.
OBLFormatUpdater::Elements OBLFormatUpdater3962n2::find(const QDomDocument& document,
                                                        const DomIndex&) const
{
    return elementsAt(document, QStringLiteral("/package/configuration"));
}

std::optional<int> OBLFormatUpdater3962n2::change(QDomDocument& /*document*/,
                                                  const Elements& found) const
{
    int count = 0;
    for (QDomElement outer : found) {
        for (QDomElement inner : descendantsOf(outer, QStringLiteral("configurations"))) {
            inner.setTagName(QStringLiteral("configuration"));
            ++count;
        }
        outer.setTagName(QStringLiteral("configurations"));
        ++count;
    }
    return count;
}

} // namespace Ksx::Core
