#include "updating/oblformatupdater4510.h"

#include "data/desc/outputusage.h"
#include "updating/elementpath.h"
#include <algorithm>
#include <iterator>

namespace Ksx::Core {

namespace {

using Orv::Data::LightDocument;
using Orv::Data::LightElement;

constexpr const char* UsageOfOutputsWithoutOne = "diffuse";

// Null if the text is no number of the table: only digits count, without sign or blanks.
const char* usageName(const QString& text)
{
    const bool isDecimal = std::all_of(text.begin(), text.end(), [](QChar c) {
        return c >= QLatin1Char('0') && c <= QLatin1Char('9');
    });
    bool isNumber = false;
    const uint index = text.toUInt(&isNumber);
    const auto& names = Data::Desc::OutputUsage::BuiltIn;
    return isDecimal && isNumber && index < std::size(names) ? names[index] : nullptr;
}

void insertUsages(LightDocument& document, LightElement output, const char* name)
{
    LightElement anchor = output.firstChild("desc");
    if (anchor.isNull())
        anchor = output.firstChild("uid");
    if (anchor.isNull()) // no output that any version of the format knows
        return;
    LightElement usages = document.makeElement("usages");
    LightElement usage = document.makeElement("usage");
    usage.append(document.makeLeaf("components", QStringLiteral("RGBA")));
    usage.append(document.makeLeaf("name", QLatin1String(name)));
    usages.append(usage);
    output.insertBehind(anchor, usages);
}

} // namespace

// Files before build 4510 had one usage per output, as the index of a fixed list of names.
//   <graphoutput><identifier v="out"/><uid v="3"/><usage v="6"/></graphoutput>
// becomes
//   <graphoutput><identifier v="out"/><uid v="3"/>
//     <usages><usage><components v="RGBA"/><name v="normal"/></usage></usages>
//   </graphoutput>
// The list stands behind `desc`, if there is one. An output without `usage` becomes "diffuse"; one
// with a number that is none of the list is left without usages. The list is that of the built-in
// usages, which keep their places.
OBLFormatUpdater::Elements OBLFormatUpdater4510::find(const Document& document,
                                                      const ElementIndex& index) const
{
    return elementsAt(document, "/package/content/*/graphOutputs/graphoutput", &index);
}

std::optional<int> OBLFormatUpdater4510::change(Document& document, const Elements& found) const
{
    for (const Element& output : found) {
        Element usage = output.firstChild("usage");
        const char* name = usage.isNull() ? UsageOfOutputsWithoutOne : usageName(usage.value());
        if (name != nullptr)
            insertUsages(document, output, name);
        usage.remove();
    }
    return static_cast<int>(found.size());
}

} // namespace Ksx::Core
