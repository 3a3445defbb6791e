// Reads and writes single objects of the schema as XML text.
#pragma once

#include "data/baseobject.h"
#include "data/xmldatareader.h"
#include "data/xmldatawriter.h"
#include <QBuffer>
#include <memory>
#include <string>

namespace TestSupport {

constexpr int MemberMissing = static_cast<int>(Orv::Data::XmlReadStatus::MemberMissing);

// The object's element, without the declaration before it and the line end behind it.
inline std::string written(const Orv::Data::BaseObject& object)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    Orv::Data::XmlDataWriter(&buffer).write(object);
    const std::string text = buffer.data().toStdString();
    const std::size_t begin = text.find("?>") + 2;
    return text.substr(begin, text.size() - 1 - begin);
}

// Fills the object from its element; answers the reader's status, 0 for success.
inline int read(Orv::Data::BaseObject& object, const std::string& xml)
{
    QByteArray bytes = QByteArray::fromStdString(xml);
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    return Orv::Data::XmlDataReader(&buffer).read(object, {});
}

// A new object of a class, read from its element; null if it was refused.
template <class T>
std::unique_ptr<T> readNew(const std::string& xml)
{
    auto object = std::make_unique<T>();
    return read(*object, xml) == 0 ? std::move(object) : nullptr;
}

// What becomes of an element when it is read and written again; empty if it was refused.
template <class T>
std::string rewritten(const std::string& xml)
{
    const auto object = readNew<T>(xml);
    return object == nullptr ? std::string() : written(*object);
}

// The text without the first place of `part`, or with something else there.
inline std::string without(std::string text, const std::string& part, const std::string& other = {})
{
    const std::size_t place = text.find(part);
    return place == std::string::npos ? "not found: " + part
                                      : text.replace(place, part.size(), other);
}

} // namespace TestSupport
