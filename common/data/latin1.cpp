#include "data/latin1.h"

namespace Orv {

void assignLatin1(std::string& out, const QChar* text, qsizetype size)
{
    out.clear();
    out.reserve(static_cast<std::size_t>(size));
    for (qsizetype i = 0; i < size; ++i) {
        const char16_t unit = text[i].unicode();
        if (unit < 0x100) {
            out.push_back(static_cast<char>(unit));
            continue;
        }
        out.push_back('?');
        if (text[i].isHighSurrogate() && i + 1 < size && text[i + 1].isLowSurrogate())
            ++i; // both halves are one character
    }
}

std::string toLatin1(const QString& text)
{
    std::string latin1;
    assignLatin1(latin1, text.constData(), text.size());
    return latin1;
}

} // namespace Orv
