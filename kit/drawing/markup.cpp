#include "drawing/markup.h"

#include <QtGlobal>
#include <cmath>

namespace Ksx::Kit {

namespace {

constexpr ushort Replacement = 0xFFFD;

bool isAllowed(ushort code)
{
    const bool isBlank = code == '\t' || code == '\n' || code == '\r';
    const bool isControl = code < 0x20 || (code >= 0x7F && code < 0xA0);
    return (isBlank || !isControl) && code != 0xFFFE && code != 0xFFFF;
}

} // namespace

QByteArray escaped(const QString& text)
{
    QString result;
    result.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        const bool isPair =
            c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (isPair) {
            result += c;
            result += text[++i];
        } else if (c == QChar('&')) {
            result += QLatin1String("&amp;");
        } else if (c == QChar('<')) {
            result += QLatin1String("&lt;");
        } else if (c == QChar('>')) {
            result += QLatin1String("&gt;");
        } else if (c == QChar('"')) {
            result += QLatin1String("&quot;");
        } else if (c == QChar('\'')) {
            result += QLatin1String("&#39;");
        } else {
            result += c.isSurrogate() || !isAllowed(c.unicode()) ? QChar(Replacement) : c;
        }
    }
    return result.toUtf8();
}

QByteArray numberText(double number)
{
    const qint64 tenths = qRound64(number * 10);
    QByteArray text = QByteArray::number(tenths / 10);
    if (tenths < 0 && tenths > -10)
        text.prepend('-');
    if (tenths % 10 != 0)
        text += '.' + QByteArray::number(std::abs(tenths % 10));
    return text;
}

} // namespace Ksx::Kit
