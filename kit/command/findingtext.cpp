#include "command/findingtext.h"

#include "command/colour.h"
#include "command/texttable.h"

namespace Ksx::Kit {

namespace {

// "FILE:LINE:COLUMN", as far as it is known.
QString locationOf(const QString& file, const Finding& finding)
{
    if (finding.line == 0)
        return lineText(file);
    return QStringLiteral("%1:%2:%3").arg(lineText(file)).arg(finding.line).arg(finding.column);
}

QString counted(std::size_t number, const char* word)
{
    return QStringLiteral("%1 %2%3").arg(number).arg(QLatin1String(word),
                                                     number == 1 ? QString() : QStringLiteral("s"));
}

} // namespace

QString findingText(const QString& file, const Finding& finding, bool isColoured)
{
    const FindingKind& kind = finding.kind();
    const Colour colour = kind.severity == Severity::Error ? Colour::Bad : Colour::Warning;
    QString text =
        QStringLiteral("%1: %2: %3 [%4]\n")
            .arg(locationOf(file, finding), coloured(wordOf(kind.severity), colour, isColoured),
                 lineText(finding.text), QLatin1String(kind.name));
    if (!finding.place.isEmpty())
        text += QStringLiteral("    at %1\n").arg(lineText(finding.place));
    return text + QStringLiteral("    %1\n").arg(QLatin1String(kind.advice));
}

QString findingSum(std::size_t errors, std::size_t warnings, std::size_t packages)
{
    return QStringLiteral("%1 and %2 in %3")
        .arg(counted(errors, "error"), counted(warnings, "warning"), counted(packages, "package"));
}

} // namespace Ksx::Kit
