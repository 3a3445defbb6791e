#include "canonicalxml.h"

#include "data/filename.h"
#include "data/latin1.h"
#include <array>
#include <cstring>

namespace Orv::Data {

namespace {

constexpr std::size_t WindowSize = std::size_t{64} * 1024;
// A longer tag is for the other reader.
constexpr std::size_t LargestWindow = std::size_t{16} * 1024 * 1024;
constexpr std::size_t LongestName = 200;
const ProgressFunction NoProgress;
constexpr std::string_view Declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";

// What a byte may be part of.
namespace Class {
constexpr std::uint8_t Blank = 1;
constexpr std::uint8_t NameStart = 2;
constexpr std::uint8_t Name = 4;
constexpr std::uint8_t Special = 8;    // has to be decoded in a value
constexpr std::uint8_t Forbidden = 16; // may not be in a value as it is
} // namespace Class

constexpr std::array<std::uint8_t, 256> makeClasses()
{
    std::array<std::uint8_t, 256> classes{};
    for (unsigned byte = 0; byte < 256; ++byte) {
        const bool isLetter =
            (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || byte == '_';
        const bool isInName =
            isLetter || (byte >= '0' && byte <= '9') || byte == '-' || byte == '.';
        unsigned found = 0;
        if (byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r')
            found |= Class::Blank;
        if (isLetter)
            found |= Class::NameStart;
        if (isInName)
            found |= Class::Name;
        if (byte == '&' || byte >= 0x80)
            found |= Class::Special;
        if (byte < 0x20 || byte == 0x7F || byte == '<')
            found |= Class::Forbidden; // white space too: a reader turns it into blanks
        classes[byte] = static_cast<std::uint8_t>(found);
    }
    return classes;
}

constexpr std::array<std::uint8_t, 256> Classes = makeClasses();

bool isOf(char byte, std::uint8_t wanted)
{
    return (Classes[static_cast<unsigned char>(byte)] & wanted) != 0;
}

const char* skip(const char* at, const char* end, std::uint8_t what)
{
    while (at != end && isOf(*at, what))
        ++at;
    return at;
}

bool isPlainAscii(char32_t character)
{
    const bool isBlank = character == '\t' || character == '\n' || character == '\r';
    return isBlank || (character >= 0x20 && character < 0x7F);
}

// Returns true for a character that every reader takes for itself in a value.
bool isPlainCharacter(char32_t character)
{
    const bool isSurrogate = character >= 0xD800 && character < 0xE000;
    const bool isNone = (character & 0xFFFE) == 0xFFFE || character > 0x10FFFF;
    return character >= 0xA0 && !isSurrogate && !isNone && character != 0xFEFF;
}

void append(QString& text, char32_t character)
{
    if (QChar::requiresSurrogates(character)) {
        text += QChar(QChar::highSurrogate(character));
        text += QChar(QChar::lowSurrogate(character));
    } else {
        text += QChar(static_cast<ushort>(character));
    }
}

// Takes a character of several bytes from the begin of `text`. Returns false if it is no valid one.
bool takeUtf8(std::string_view& text, char32_t& character)
{
    constexpr std::array<char32_t, 5> Smallest = {0, 0, 0x80, 0x800, 0x10000};
    const auto first = static_cast<unsigned char>(text.front());
    const std::size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < size)
        return false;
    character = first & (0xFFu >> (size + 1));
    for (std::size_t i = 1; i < size; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0u) != 0x80)
            return false;
        character = (character << 6) | (byte & 0x3Fu);
    }
    text.remove_prefix(size);
    return character >= Smallest[size] && isPlainCharacter(character);
}

// Reads a number behind "&#". Returns 0 for anything but a character.
char32_t characterOfNumber(std::string_view digits)
{
    constexpr std::size_t MostDigits = 8;
    const bool isHexadecimal = !digits.empty() && digits.front() == 'x';
    if (isHexadecimal)
        digits.remove_prefix(1);
    if (digits.empty() || digits.size() > MostDigits)
        return 0;
    char32_t number = 0;
    for (const char digit : digits) {
        unsigned value = 16;
        if (digit >= '0' && digit <= '9')
            value = static_cast<unsigned>(digit - '0');
        else if (isHexadecimal && digit >= 'a' && digit <= 'f')
            value = static_cast<unsigned>(digit - 'a') + 10;
        else if (isHexadecimal && digit >= 'A' && digit <= 'F')
            value = static_cast<unsigned>(digit - 'A') + 10;
        if (value == 16)
            return 0;
        number = number * (isHexadecimal ? 16 : 10) + value;
    }
    return isPlainAscii(number) || isPlainCharacter(number) ? number : 0;
}

// Takes a reference, which begins with "&", from the begin of `text`. Returns 0 for any but those
// that need no declaration.
char32_t takeReference(std::string_view& text)
{
    const std::size_t end = text.find(';');
    if (end == std::string_view::npos)
        return 0;
    const std::string_view name = text.substr(1, end - 1);
    text.remove_prefix(end + 1);
    if (!name.empty() && name.front() == '#')
        return characterOfNumber(name.substr(1));
    if (name == "lt")
        return '<';
    if (name == "gt")
        return '>';
    if (name == "amp")
        return '&';
    if (name == "quot")
        return '"';
    return name == "apos" ? '\'' : 0;
}

} // namespace

bool isCanonicalName(std::string_view name)
{
    return !name.empty() && isOf(name.front(), Class::NameStart) &&
           skip(name.data(), name.data() + name.size(), Class::Name) == name.data() + name.size();
}

bool isCanonicalText(std::u16string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t character = text[i];
        if (QChar::isHighSurrogate(character) && i + 1 < text.size() &&
            QChar::isLowSurrogate(text[i + 1])) {
            character = QChar::surrogateToUcs4(text[i], text[i + 1]);
            ++i;
        }
        if (!isPlainAscii(character) && !isPlainCharacter(character))
            return false;
    }
    return true;
}

bool decodeCanonical(std::string_view value, QString& text)
{
    text.resize(0);
    while (!value.empty()) {
        const auto byte = static_cast<unsigned char>(value.front());
        char32_t character = byte;
        if (byte == '&')
            character = takeReference(value);
        else if (byte < 0x80)
            value.remove_prefix(1);
        else if (!takeUtf8(value, character))
            return false;
        if (character == 0)
            return false;
        append(text, character);
    }
    return true;
}

CanonicalXmlTokens::CanonicalXmlTokens(QIODevice& device, const ProgressFunction& progress)
    : m_device(&device), m_progress(progress, device.size()), m_buffer(WindowSize),
      m_at(m_buffer.data()), m_end(m_at)
{}

CanonicalXmlTokens::CanonicalXmlTokens(std::string_view document)
    : m_device(nullptr), m_progress(NoProgress, 0), m_at(document.data()),
      m_end(m_at + document.size())
{}

bool CanonicalXmlTokens::begin()
{
    while (m_end - m_at < static_cast<std::ptrdiff_t>(Declaration.size()))
        if (!readMore())
            return false;
    if (std::string_view(m_at, Declaration.size()) != Declaration)
        return false;
    m_at += Declaration.size();
    next();
    return isStart();
}

// Moves what has not been scanned to the begin of the window and reads on behind it. Returns false
// at the end of the document, after a failure and if the window would become too large.
bool CanonicalXmlTokens::readMore()
{
    if (m_device == nullptr)
        return false;
    const auto kept = static_cast<std::size_t>(m_end - m_at);
    m_offset += m_at - m_buffer.data();
    std::memmove(m_buffer.data(), m_at, kept);
    if (kept == m_buffer.size() && kept < LargestWindow)
        m_buffer.resize(2 * kept);
    const auto room = static_cast<qint64>(m_buffer.size() - kept);
    const qint64 count = room == 0 ? -1 : m_device->read(m_buffer.data() + kept, room);
    m_at = m_buffer.data();
    m_end = m_at + kept + (count > 0 ? count : 0);
    if (count < 0)
        m_token = Token::Failure;
    return count > 0;
}

void CanonicalXmlTokens::next()
{
    if (m_isEmptyElement) {
        m_isEmptyElement = false;
        m_token = Token::End;
        return;
    }
    Q_ASSERT(m_token != Token::Failure && m_token != Token::EndOfDocument);
    for (;;) {
        m_at = skip(m_at, m_end, Class::Blank);
        const Scan scan = m_at == m_end ? Scan::NeedsMore : scanTag();
        if (scan == Scan::Done)
            return;
        if (scan == Scan::NeedsMore && readMore())
            continue;
        const bool isEnd = scan == Scan::NeedsMore && m_at == m_end && m_token == Token::End &&
                           m_nameSizes.empty();
        m_token = isEnd ? Token::EndOfDocument : Token::Failure;
        return;
    }
}

CanonicalXmlTokens::Scan CanonicalXmlTokens::scanTag()
{
    if (*m_at != '<')
        return Scan::Foreign;
    if (m_end - m_at < 2)
        return Scan::NeedsMore;
    return m_at[1] == '/' ? scanEndTag() : scanStartTag();
}

CanonicalXmlTokens::Scan CanonicalXmlTokens::scanEndTag()
{
    if (m_nameSizes.empty())
        return Scan::Foreign;
    const std::size_t size = m_nameSizes.back();
    const char* const name = m_at + 2;
    if (static_cast<std::size_t>(m_end - name) <= size)
        return Scan::NeedsMore;
    const std::size_t place = m_openNames.size() - size;
    if (std::memcmp(name, m_openNames.data() + place, size) != 0)
        return Scan::Foreign;
    const char* const at = skip(name + size, m_end, Class::Blank);
    if (at == m_end)
        return Scan::NeedsMore;
    if (*at != '>')
        return Scan::Foreign;
    m_openNames.resize(place);
    m_nameSizes.pop_back();
    m_name = {name, size};
    m_token = Token::End;
    m_at = at + 1;
    return Scan::Done;
}

CanonicalXmlTokens::Scan CanonicalXmlTokens::scanStartTag()
{
    // There is one root element.
    if (m_token == Token::End && m_nameSizes.empty())
        return Scan::Foreign;
    const char* const name = m_at + 1;
    if (!isOf(*name, Class::NameStart))
        return Scan::Foreign;
    const char* at = skip(name, m_end, Class::Name);
    const auto size = static_cast<std::size_t>(at - name);
    if (size > LongestName)
        return Scan::Foreign;
    m_hasValue = false;
    at = skip(at, m_end, Class::Blank);
    if (at != m_end && *at == 'v') { // blanks were skipped, as the letter is one of names
        const Scan scan = scanValue(at);
        if (scan != Scan::Done)
            return scan;
        at = skip(at, m_end, Class::Blank);
    }
    if (at == m_end)
        return Scan::NeedsMore;
    const bool isEmpty = *at == '/';
    if (isEmpty && ++at == m_end)
        return Scan::NeedsMore;
    if (*at != '>')
        return Scan::Foreign;
    m_isEmptyElement = isEmpty;
    if (!isEmpty) {
        m_openNames.append(name, size);
        m_nameSizes.push_back(static_cast<std::uint8_t>(size));
    }
    m_name = {name, size};
    m_token = Token::Start;
    m_at = at + 1;
    return Scan::Done;
}

// Scans `v="..."`. Leaves `at` behind the closing quote.
CanonicalXmlTokens::Scan CanonicalXmlTokens::scanValue(const char*& at)
{
    if (m_end - at < 3)
        return Scan::NeedsMore;
    const char quote = at[2];
    if (at[1] != '=' || (quote != '"' && quote != '\''))
        return Scan::Foreign;
    const char* const begin = at + 3;
    const auto* const end = static_cast<const char*>(
        std::memchr(begin, quote, static_cast<std::size_t>(m_end - begin)));
    if (end == nullptr)
        return Scan::NeedsMore;
    unsigned classes = 0;
    for (const char* byte = begin; byte != end; ++byte)
        classes |= Classes[static_cast<unsigned char>(*byte)];
    m_value = {begin, static_cast<std::size_t>(end - begin)};
    m_isDecoded = (classes & Class::Special) != 0;
    if ((classes & Class::Forbidden) != 0 || (m_isDecoded && !decodeCanonical(m_value, m_decoded)))
        return Scan::Foreign;
    m_hasValue = true;
    at = end + 1;
    return Scan::Done;
}

std::optional<std::string_view> CanonicalXmlTokens::value(bool isFilePath,
                                                          std::string& buffer) const
{
    if (!m_hasValue)
        return std::nullopt;
    if (!m_isDecoded)
        return m_value;
    if (isFilePath)
        buffer = toBytes(m_decoded);
    else
        assignLatin1(buffer, m_decoded.constData(), m_decoded.size());
    return buffer;
}

} // namespace Orv::Data
