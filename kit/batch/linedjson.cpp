#include "batch/linedjson.h"

#include <QIODevice>
#include <QJsonArray>
#include <QJsonDocument>
#include <algorithm>

namespace Ksx::Kit {

namespace {

QByteArray jsonOf(const QJsonValue& value)
{
    // Only a list or an object is a document.
    const QByteArray list = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return list.mid(1, list.size() - 2);
}

bool isPlain(QChar character)
{
    return character >= ' ' && character <= '~' && character != '"' && character != '\\';
}

} // namespace

QByteArray jsonText(const QString& text)
{
    // Nearly all texts are so, and Qt takes its time for them.
    if (std::all_of(text.begin(), text.end(), isPlain))
        return '"' + text.toLatin1() + '"';
    return jsonOf(text);
}

void LinedJson::add(const char* name, const QJsonValue& value)
{
    begin(name);
    write(jsonOf(value));
}

void LinedJson::beginList(const char* name)
{
    begin(name);
    m_isListEmpty = true;
    write("[");
}

void LinedJson::addItem(const QJsonObject& item)
{
    addItem(QJsonDocument(item).toJson(QJsonDocument::Compact));
}

void LinedJson::addItem(const QByteArray& item)
{
    write(m_isListEmpty ? "\n" : ",\n");
    write(item);
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
