// Writes large documents of JSON that programs of lines can work on.
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>

class QIODevice;

namespace Ksx::Kit {

// Returns a text as JSON has it, in quotation marks.
QByteArray jsonText(const QString& text);

// One object. Each of its members has a line, and so has each item of a list. No more than one item
// is held.
class LinedJson
{
public:
    // Begins the object.
    explicit LinedJson(QIODevice& device) : m_device(device) {}

    void add(const char* name, const QJsonValue& value);
    void beginList(const char* name);
    void addItem(const QJsonObject& item);
    // Adds an item that is JSON already, in one line.
    void addItem(const QByteArray& item);
    void endList();
    // Ends the object. Returns false if the device did not take all of it.
    bool finish();

private:
    void begin(const char* name);
    void write(const QByteArray& bytes);

    QIODevice& m_device;
    bool m_isEmpty = true;
    bool m_isListEmpty = true;
    bool m_hasFailed = false;
};

} // namespace Ksx::Kit
