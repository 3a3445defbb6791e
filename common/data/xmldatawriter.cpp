#include "data/xmldatawriter.h"

#include "data/attributebase.h"
#include "data/containerlist.h"
#include "data/containerstruct.h"
#include "data/filename.h"
#include <QFileDevice>
#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

namespace Orv::Data {

namespace {

// Large enough for few calls, small enough to stay in the cache.
constexpr std::size_t BlockSize = std::size_t{64} * 1024;

// What an ASCII character becomes inside an attribute; empty if it stands for itself. XML has no
// way to hold the other control characters: a file with one could not be read again.
constexpr std::string_view escapeOf(unsigned char c)
{
    switch (c) {
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '&':
        return "&amp;";
    case '"':
        return "&quot;";
    case '\t':
        return "&#9;";
    case '\n':
        return "&#10;";
    case '\r':
        return "&#13;";
    default:
        return c < 0x20 ? "?" : std::string_view();
    }
}

// True for the bytes of a Latin-1 text that are copied as they are.
constexpr std::array<bool, 256> plainBytes()
{
    std::array<bool, 256> plain{};
    for (unsigned c = 0; c < 128; ++c)
        plain[c] = escapeOf(static_cast<unsigned char>(c)).empty();
    return plain;
}

constexpr std::array<bool, 256> IsPlain = plainBytes();

// False for a text with a character that XML has no way to hold, or with a byte that is no part of
// any character.
bool canBeHeld(const QString& text)
{
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
        else if (c.isSurrogate() || c.unicode() >= 0xFFFE ||
                 (c.unicode() < 0x20 && c != '\t' && c != '\n' && c != '\r'))
            return false;
    }
    return true;
}

} // namespace

XmlDataWriter::XmlDataWriter(QIODevice* device) : m_device(device)
{
    m_buffer.reserve(BlockSize + BlockSize / 4);
}

void XmlDataWriter::addValueConverter(std::uint32_t mask, ValueFunction function)
{
    m_converters.push_back({mask, std::move(function)});
}

bool XmlDataWriter::write(const BaseObject& root)
{
    m_buffer.append(R"(<?xml version="1.0" encoding="UTF-8"?>)");
    writeTree(root);
    m_buffer.push_back('\n');
    flush();
    // A file holds a small document back, and the disk is asked only when it lets go.
    auto* file = qobject_cast<QFileDevice*>(m_device);
    if (file != nullptr && !m_failed && !file->flush())
        m_failed = true;
    return !m_failed;
}

void XmlDataWriter::writeTree(const BaseObject& root)
{
    struct Level
    {
        const Container* container;
        const ObjectMeta* meta;
        MemberSpan members; // of a structure; without rows for lists and unions
        std::size_t count;
        std::size_t next;
    };
    std::vector<Level> levels;
    const auto begin = [&](const BaseObject& object, const ObjectMeta& meta) {
        if (object.kind() == ObjectKind::Attribute) {
            writeAttribute(static_cast<const AttributeBase&>(object), meta);
            return;
        }
        startElement(meta);
        const Container* container = object.asContainer();
        if (object.kind() == ObjectKind::Struct) {
            const MemberSpan members =
                static_cast<const ContainerStructBase*>(container)->members();
            levels.push_back({container, &meta, members, members.count, 0});
        } else {
            levels.push_back({container, &meta, {}, container->childCount(), 0});
        }
    };

    begin(root, root.getMeta());
    while (!levels.empty() && !m_failed) {
        Level& level = levels.back();
        if (level.next == level.count) {
            endElement(*level.meta);
            levels.pop_back();
            continue;
        }
        const std::size_t index = level.next++;
        if (level.members.rows == nullptr) {
            const BaseObject& item = *level.container->childAt(index);
            begin(item, item.getMeta());
            continue;
        }
        const ObjectMeta& meta = *level.members.rows[index].meta;
        const BaseObject& member = *level.members.object(index);
        if (!meta.isOptional || member.isModified())
            begin(member, meta);
    }
}

void XmlDataWriter::writeAttribute(const AttributeBase& attribute, const ObjectMeta& meta)
{
    closeStartTag();
    m_buffer.push_back('<');
    m_buffer.append(meta.name);
    m_buffer.append(" v=\"");
    m_text.clear();
    attribute.appendText(m_text);
    const auto applies = [&](const Converter& converter) {
        return (converter.mask & meta.valueFlags) == converter.mask;
    };
    const bool isFilePath = (meta.valueFlags & ValueFlag::FilePath) != 0;
    if (isFilePath || std::any_of(m_converters.begin(), m_converters.end(), applies)) {
        const auto length = static_cast<int>(m_text.size());
        QString text = isFilePath ? fromBytes(m_text) : QString::fromLatin1(m_text.data(), length);
        for (const Converter& converter : m_converters)
            if (applies(converter))
                text = converter.function(text);
        // A name with a "?" in it would lead to another file, or to none.
        if (isFilePath && !canBeHeld(text))
            m_failed = true;
        appendEscaped(text);
    } else {
        appendEscapedLatin1(m_text);
    }
    m_buffer.append("\"/>");
    flushIfFull();
}

void XmlDataWriter::startElement(const ObjectMeta& meta)
{
    closeStartTag();
    m_buffer.push_back('<');
    m_buffer.append(meta.name);
    m_tagIsOpen = true;
}

void XmlDataWriter::endElement(const ObjectMeta& meta)
{
    if (m_tagIsOpen) {
        m_buffer.append("/>");
        m_tagIsOpen = false;
    } else {
        m_buffer.append("</");
        m_buffer.append(meta.name);
        m_buffer.push_back('>');
    }
    flushIfFull();
}

void XmlDataWriter::closeStartTag()
{
    if (m_tagIsOpen)
        m_buffer.push_back('>');
    m_tagIsOpen = false;
}

void XmlDataWriter::appendEscapedLatin1(const std::string& text)
{
    const char* place = text.data();
    const char* const end = place + text.size();
    while (place != end) {
        const char* plainEnd = place;
        while (plainEnd != end && IsPlain[static_cast<unsigned char>(*plainEnd)])
            ++plainEnd;
        m_buffer.append(place, plainEnd);
        if (plainEnd == end)
            return;
        const auto c = static_cast<unsigned char>(*plainEnd);
        if (c < 0x80) {
            m_buffer.append(escapeOf(c));
        } else {
            m_buffer.push_back(static_cast<char>(0xC0u | (c >> 6)));
            m_buffer.push_back(static_cast<char>(0x80u | (c & 0x3Fu)));
        }
        place = plainEnd + 1;
    }
}

void XmlDataWriter::appendEscaped(const QString& text)
{
    const QByteArray utf8 = text.toUtf8(); // "?" for what Unicode cannot hold
    for (const char byte : utf8) {
        const std::string_view escape = escapeOf(static_cast<unsigned char>(byte));
        if (escape.empty())
            m_buffer.push_back(byte);
        else
            m_buffer.append(escape);
    }
}

void XmlDataWriter::flushIfFull()
{
    if (m_buffer.size() >= BlockSize)
        flush();
}

void XmlDataWriter::flush()
{
    const auto size = static_cast<qint64>(m_buffer.size());
    if (!m_failed && m_device->write(m_buffer.data(), size) != size)
        m_failed = true;
    m_buffer.clear();
}

} // namespace Orv::Data
