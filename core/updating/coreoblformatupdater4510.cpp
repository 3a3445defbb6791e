#include "updating/oblformatupdater4510.h"

#include "data/desc/outputusage.h"
#include "updating/dompath.h"
#include <QDomDocument>
#include <algorithm>
#include <iterator>

namespace Ksx::Core {

namespace {

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

QDomElement leaf(QDomDocument& document, const QString& name, const char* value)
{
    QDomElement element = document.createElement(name);
    element.setAttribute(QStringLiteral("v"), QLatin1String(value));
    return element;
}

void insertUsages(QDomDocument& document, QDomElement output, const char* name)
{
    QDomElement anchor = output.firstChildElement(QStringLiteral("desc"));
    if (anchor.isNull())
        anchor = output.firstChildElement(QStringLiteral("uid"));
    if (anchor.isNull()) // no output that any version of the format knows
        return;
    QDomElement usage = document.createElement(QStringLiteral("usage"));
    usage.appendChild(leaf(document, QStringLiteral("components"), "RGBA"));
    usage.appendChild(leaf(document, QStringLiteral("name"), name));
    QDomElement usages = document.createElement(QStringLiteral("usages"));
    usages.appendChild(usage);
    output.insertAfter(usages, anchor);
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
OBLFormatUpdater::Elements OBLFormatUpdater4510::find(const QDomDocument& document,
                                                      const DomIndex& index) const
{
    return elementsAt(document, QStringLiteral("/package/content/*/graphOutputs/graphoutput"),
                      &index);
}

std::optional<int> OBLFormatUpdater4510::change(QDomDocument& document, const Elements& found) const
{
    for (QDomElement output : found) {
        const QDomElement usage = output.firstChildElement(QStringLiteral("usage"));
        const char* name = usage.isNull() ? UsageOfOutputsWithoutOne
                                          : usageName(usage.attribute(QStringLiteral("v")));
        if (name != nullptr)
            insertUsages(document, output, name);
        output.removeChild(usage);
    }
    return static_cast<int>(found.size());
}

} // namespace Ksx::Core
