#include "updating/oblformatupdater3962n1.h"

#include "updating/dompath.h"
#include <QDomDocument>

namespace Ksx::Core {

namespace {

struct Renaming
{
    const char* before;
    const char* after;
};

constexpr Renaming Renamings[] = {
    {"slidermin", "min"},
    {"slidermax", "max"},
    {"clampvalues", "clamp"},
};

// False if the name is none of the table.
bool rename(QDomElement name)
{
    const QString value = name.attribute(QStringLiteral("v"));
    for (const Renaming& renaming : Renamings)
        if (value == QLatin1String(renaming.before)) {
            name.setAttribute(QStringLiteral("v"), QLatin1String(renaming.after));
            return true;
        }
    return false;
}

} // namespace

// Files before build 3962 had other names for three options of the widgets of inputs.
//   <defaultWidget><name v="slider"/><options>
//     <option><name v="slidermin"/><value v="0"/></option>
//     <option><name v="step"/><value v="0.1"/></option>
//   </options></defaultWidget>
// becomes
//   <defaultWidget><name v="slider"/><options>
//     <option><name v="min"/><value v="0"/></option>
//     <option><name v="step"/><value v="0.1"/></option>
//   </options></defaultWidget>
OBLFormatUpdater::Elements OBLFormatUpdater3962n1::find(const QDomDocument& document,
                                                        const DomIndex& index) const
{
    return elementsAt(document,
                      QStringLiteral("/package/content/*/paraminputs/paraminput/"
                                     "defaultWidget/options/option/name"),
                      &index);
}

std::optional<int> OBLFormatUpdater3962n1::change(QDomDocument& /*document*/,
                                                  const Elements& found) const
{
    int count = 0;
    for (const QDomElement& name : found)
        count += rename(name) ? 1 : 0;
    return count;
}

} // namespace Ksx::Core
