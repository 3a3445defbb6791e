#include "command/differencetext.h"

#include "command/colour.h"
#include "command/texttable.h"
#include <algorithm>
#include <array>

namespace Ksx::Kit {

namespace {

constexpr std::array Kinds = {ChangeKind::Added, ChangeKind::Removed, ChangeKind::Moved,
                              ChangeKind::Renamed, ChangeKind::Changed};
constexpr int WordWidth = 8; // of the longest word, and a blank

Colour colourOf(ChangeKind kind)
{
    switch (kind) {
    case ChangeKind::Added:
        return Colour::Good;
    case ChangeKind::Removed:
        return Colour::Bad;
    case ChangeKind::Changed:
        return Colour::Warning;
    default:
        return Colour::Other;
    }
}

// The value of a parameter needs no more words.
bool saysNothing(const Difference& difference)
{
    return difference.member.isEmpty() || difference.member == QLatin1String("paramValue") ||
           difference.member == QLatin1String("constantValue");
}

QString subjectOf(const Difference& difference)
{
    QStringList parts = difference.within;
    parts.append(difference.name.isEmpty()
                     ? difference.object
                     : QStringLiteral("%1 %2").arg(difference.object, difference.name));
    if (!saysNothing(difference))
        parts.append(difference.member);
    return lineText(parts.join(QStringLiteral(", ")));
}

QString valuesOf(const Difference& difference)
{
    const QString before = cellText(difference.before);
    const QString after = cellText(difference.after);
    if (difference.kind == ChangeKind::Added || difference.kind == ChangeKind::Removed)
        return before + after;
    return QStringLiteral("%1 -> %2")
        .arg(before.isEmpty() ? QStringLiteral("nothing") : before,
             after.isEmpty() ? QStringLiteral("nothing") : after);
}

QString lineOf(const Difference& difference, bool isColoured)
{
    const QString values = valuesOf(difference);
    const QString word = wordOf(difference.kind).leftJustified(WordWidth);
    return QStringLiteral("  %1%2%3\n")
        .arg(coloured(word, colourOf(difference.kind), isColoured), subjectOf(difference),
             values.isEmpty() ? QString() : QStringLiteral(": ") + values);
}

QString countsOf(const std::vector<Difference>& differences)
{
    QStringList counts;
    for (const ChangeKind kind : Kinds) {
        const auto count = std::count_if(differences.begin(), differences.end(),
                                         [&](const Difference& one) { return one.kind == kind; });
        if (count > 0)
            counts.append(QStringLiteral("%1 %2").arg(count).arg(wordOf(kind)));
    }
    return counts.join(QStringLiteral(", "));
}

} // namespace

QString differenceText(const std::vector<Difference>& differences, bool isColoured)
{
    QString text;
    const QString* place = nullptr;
    for (const Difference& difference : differences) {
        if (place == nullptr || *place != difference.place) {
            const QString head =
                difference.place.isEmpty() ? QStringLiteral("package") : difference.place;
            text += coloured(lineText(head), Colour::Strong, isColoured) + QLatin1Char('\n');
        }
        place = &difference.place;
        text += lineOf(difference, isColoured);
    }
    return text + countsOf(differences) + QLatin1Char('\n');
}

} // namespace Ksx::Kit
