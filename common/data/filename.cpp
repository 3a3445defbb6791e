#include "data/filename.h"

#include <QtGlobal>
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#include <QTextCodec>
#endif

namespace Orv {

namespace {

constexpr char16_t EscapeBase = 0xDC00; // plus 0x80 to 0xFF: never a part of valid text by itself

bool isContinuation(unsigned char byte)
{
    return (byte & 0xC0u) == 0x80u;
}

// The length of the valid UTF-8 sequence at the begin of `bytes`, its character in `character`;
// 0 if there is none. Refuses overlong forms, surrogates and what lies beyond U+10FFFF.
std::size_t decodeOne(std::string_view bytes, char32_t& character)
{
    const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned char lead = at(0);
    if (lead < 0x80) {
        character = lead;
        return 1;
    }
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length)
        return 0;
    character = lead & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(at(i)))
            return 0;
        character = (character << 6) | (at(i) & 0x3Fu);
    }
    constexpr char32_t Smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
    return character < Smallest[length] || isSurrogate || character > 0x10FFFF ? 0 : length;
}

bool isEscape(QChar c)
{
    return c.unicode() >= EscapeBase + 0x80 && c.unicode() <= EscapeBase + 0xFF;
}

} // namespace

QString fromBytes(std::string_view bytes)
{
    QString text;
    text.reserve(static_cast<int>(bytes.size()));
    while (!bytes.empty()) {
        char32_t character = 0;
        std::size_t length = decodeOne(bytes, character);
        if (length == 0) {
            text.append(QChar(
                static_cast<char16_t>(EscapeBase + static_cast<unsigned char>(bytes.front()))));
            length = 1;
        } else if (character >= 0x10000) {
            text.append(QChar(QChar::highSurrogate(character)));
            text.append(QChar(QChar::lowSurrogate(character)));
        } else {
            text.append(QChar(static_cast<char16_t>(character)));
        }
        bytes.remove_prefix(length);
    }
    return text;
}

std::string toBytes(const QString& text)
{
    std::string bytes;
    const auto appendUtf8 = [&](int begin, int end) {
        const QByteArray utf8 = text.mid(begin, end - begin).toUtf8();
        bytes.append(utf8.constData(), static_cast<std::size_t>(utf8.size()));
    };
    const auto size = static_cast<int>(text.size());
    int plainBegin = 0; // of the text that is no escape
    for (int i = 0; i < size; ++i) {
        if (text[i].isHighSurrogate() && i + 1 < size && text[i + 1].isLowSurrogate()) {
            ++i; // a character, whatever its second half looks like
        } else if (isEscape(text[i])) {
            appendUtf8(plainBegin, i);
            bytes.push_back(static_cast<char>(text[i].unicode() - EscapeBase));
            plainBegin = i + 1;
        }
    }
    appendUtf8(plainBegin, size);
    return bytes;
}

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)

namespace {

class FileNameCodec final : public QTextCodec
{
public:
    QByteArray name() const override { return "x-file-name"; }
    int mibEnum() const override { return 2000000001; } // in the range left to private use

protected:
    QString convertToUnicode(const char* bytes, int length, ConverterState*) const override
    {
        return fromBytes({bytes, static_cast<std::size_t>(length)});
    }
    QByteArray convertFromUnicode(const QChar* text, int length, ConverterState*) const override
    {
        return QByteArray::fromStdString(toBytes(QString(text, length)));
    }
};

} // namespace

void installFileNameCodec()
{
    static auto* const codec = new FileNameCodec; // Qt owns every codec
    QTextCodec::setCodecForLocale(codec);
}

#else

void installFileNameCodec()
{
    // Qt 6 takes file names for UTF-8 under every locale by itself, and has no place for a codec.
}

#endif

} // namespace Orv
