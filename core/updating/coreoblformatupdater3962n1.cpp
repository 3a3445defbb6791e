#include "updating/oblformatupdater3962n1.h"

#include "updating/elementpath.h"

namespace Ksx::Core {

namespace {

using Orv::Data::LightElement;

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
bool rename(LightElement name)
{
    const QString value = name.value();
    for (const Renaming& renaming : Renamings)
        if (value == QLatin1String(renaming.before)) {
            name.setValue(QLatin1String(renaming.after));
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
OBLFormatUpdater::Elements OBLFormatUpdater3962n1::find(const Document& document,
                                                        const ElementIndex& index) const
{
    return elementsAt(document,
                      "/package/content/*/paraminputs/paraminput/defaultWidget/options/option/name",
                      &index);
}

std::optional<int> OBLFormatUpdater3962n1::change(Document& /*document*/,
                                                  const Elements& found) const
{
    int count = 0;
    for (const Element& name : found)
        count += rename(name) ? 1 : 0;
    return count;
}

} // namespace Ksx::Core
