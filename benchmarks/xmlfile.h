// A buffered writer for the XML of packages: elements without text whose only attribute is `v`.
#pragma once

#include <cstdint>
#include <fstream>
#include <initializer_list>
#include <string>

namespace Benchmark {

// Throws std::runtime_error when the file cannot be opened, and from finish() when any writing
// failed. Names and values are XML text: they hold no character that needs an entity.
class XmlFile
{
public:
    explicit XmlFile(const std::string& path);

    void raw(const char* text) { m_text += text; }
    void open(const char* element) { put({"<", element, ">"}); }
    void close(const char* element);
    void empty(const char* element) { put({"<", element, "/>"}); }
    void leaf(const char* element, const char* value)
    {
        put({"<", element, " v=\"", value, "\"/>"});
    }
    void leaf(const char* element, const std::string& value) { leaf(element, value.c_str()); }
    void leaf(const char* element, std::uint32_t value) { leaf(element, std::to_string(value)); }

    void finish();

private:
    void put(std::initializer_list<const char*> parts);
    void flush();

    std::ofstream m_file;
    std::string m_text;
};

// An element that ends with its scope.
class Element
{
public:
    Element(XmlFile& xml, const char* name) : m_xml(xml), m_name(name) { xml.open(name); }
    ~Element() { m_xml.close(m_name); }
    Element(const Element&) = delete;
    Element& operator=(const Element&) = delete;

private:
    XmlFile& m_xml;
    const char* m_name;
};

// `text` with entities for the four characters that an attribute value cannot hold.
std::string attributeText(const std::string& text);

} // namespace Benchmark
