// The buffered writer for the XML of packages.
#include "xmlfile.h"

#include <stdexcept>

namespace Benchmark {

namespace {
constexpr std::size_t FlushSize = 1 << 20;
} // namespace

XmlFile::XmlFile(const std::string& path) : m_file(path, std::ios::binary)
{
    if (!m_file)
        throw std::runtime_error("cannot write " + path);
    m_text.reserve(FlushSize + 4096);
}

void XmlFile::close(const char* element)
{
    put({"</", element, ">"});
    if (m_text.size() >= FlushSize)
        flush();
}

void XmlFile::finish()
{
    flush();
    m_file.close();
    if (!m_file)
        throw std::runtime_error("writing failed");
}

void XmlFile::put(std::initializer_list<const char*> parts)
{
    for (const char* part : parts)
        m_text += part;
}

void XmlFile::flush()
{
    m_file.write(m_text.data(), static_cast<std::streamsize>(m_text.size()));
    m_text.clear();
}

std::string attributeText(const std::string& text)
{
    std::string escaped;
    for (const char character : text) {
        switch (character) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += character;
        }
    }
    return escaped;
}

} // namespace Benchmark
