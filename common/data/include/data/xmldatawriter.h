// Writes an object tree as an XML document.
#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <list>
#include <string>

class QIODevice;

namespace Orv::Data {

class BaseObject;
class AttributeBase;
struct ObjectMeta;

// The counterpart of XmlDataReader: one element per object, members in the order of declaration,
// optional ones only while they are modified, list items always. The document is UTF-8 and stands
// on one line, which ends with the document; its bytes are those that QXmlStreamWriter would give,
// whose per-token conversions would cost more than all the rest of a save. Serves one write.
class XmlDataWriter
{
public:
    using ValueFunction = std::function<QString(const QString&)>;

    // `device` is open for writing and outlives the writer.
    explicit XmlDataWriter(QIODevice* device);

    // Before a value is written, each function whose mask is contained in the value flags of the
    // leaf's declaration turns its text into another one, in the order of registration.
    void addValueConverter(std::uint32_t mask, ValueFunction function);

    // Returns false as soon as the device refuses bytes, or if XML cannot hold a file path. What has
    // been written by then is no document.
    bool write(const BaseObject& root);

private:
    struct Converter
    {
        std::uint32_t mask;
        ValueFunction function;
    };

    void writeTree(const BaseObject& root);
    void writeAttribute(const AttributeBase& attribute, const ObjectMeta& meta);
    void startElement(const ObjectMeta& meta);
    void endElement(const ObjectMeta& meta);
    void closeStartTag();
    void appendEscapedLatin1(const std::string& text);
    void appendEscaped(const QString& text);
    void flushIfFull();
    void flush();

    QIODevice* m_device;
    std::list<Converter> m_converters;
    std::string m_buffer;
    std::string m_text; // of the value at hand, kept for its memory
    bool m_tagIsOpen = false;
    bool m_failed = false;
};

} // namespace Orv::Data
