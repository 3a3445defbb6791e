#include "report/filenames.h"

namespace Ksx::Kit {

namespace {

constexpr int MaximumName = 80;
const QString PathPrefix = QStringLiteral("pkg://");

bool isLetterOrDigit(QChar c)
{
    const ushort code = c.unicode();
    return (code >= '0' && code <= '9') || (code >= 'A' && code <= 'Z') ||
           (code >= 'a' && code <= 'z');
}

} // namespace

QString safeFileName(const QString& text)
{
    QString name;
    for (const QChar c : text.left(MaximumName)) {
        const bool isSign = c == QChar('-') || c == QChar('.');
        const bool isFirstSign = isSign && name.isEmpty();
        name += (isLetterOrDigit(c) || isSign) && !isFirstSign ? c : QChar('_');
    }
    return name.isEmpty() ? QStringLiteral("_") : name;
}

QString withoutScheme(const QString& place)
{
    const QString scheme = QStringLiteral("pkg://");
    return place.startsWith(scheme) ? place.mid(scheme.size()) : place;
}

QString dottedName(const QString& place)
{
    return withoutScheme(place).replace(QChar('/'), QChar('.'));
}

QString UniqueFileNames::nameFor(const QString& text)
{
    const QString base = safeFileName(text);
    QString name = base;
    while (m_counts.contains(name.toLower())) {
        const int count = ++m_counts[base.toLower()];
        name = QStringLiteral("%1-%2").arg(base).arg(count);
    }
    m_counts.insert(name.toLower(), 1);
    return name;
}

QString anchorOf(const QString& place)
{
    QString anchor = QStringLiteral("g-");
    const QString path = place.section(QChar('?'), 0, 0);
    for (const QChar c : path.startsWith(PathPrefix) ? path.mid(PathPrefix.size()) : path) {
        if (isLetterOrDigit(c) || c == QChar('_') || c == QChar('-') || c == QChar('/'))
            anchor += c;
        else
            anchor += QStringLiteral(".%1.").arg(c.unicode(), 0, 16);
    }
    return anchor;
}

} // namespace Ksx::Kit
