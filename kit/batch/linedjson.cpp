#include "batch/linedjson.h"

#include <QIODevice>
#include <QJsonArray>
#include <QJsonDocument>

namespace Ksx::Kit {

void LinedJson::add(const char* name, const QJsonValue& value)
{
    begin(name);
    // Only a list or an object is a document.
    const QByteArray list = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    write(list.mid(1, list.size() - 2));
}

void LinedJson::beginList(const char* name)
{
    begin(name);
    m_isListEmpty = true;
    write("[");
}

void LinedJson::addItem(const QJsonObject& item)
{
    write(m_isListEmpty ? "\n" : ",\n");
    write(QJsonDocument(item).toJson(QJsonDocument::Compact));
    m_isListEmpty = false;
}

void LinedJson::endList()
{
    write(m_isListEmpty ? "]" : "\n]");
}

bool LinedJson::finish()
{
    write("\n}\n");
    return !m_hasFailed;
}

void LinedJson::begin(const char* name)
{
    write(m_isEmpty ? "{\n\"" : ",\n\"");
    write(name);
    write("\":");
    m_isEmpty = false;
}

void LinedJson::write(const QByteArray& bytes)
{
    m_hasFailed = m_hasFailed || m_device.write(bytes) != bytes.size();
}

} // namespace Ksx::Kit
