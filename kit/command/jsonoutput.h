// Results as JSON. docs/ksx.schema.json describes all of it.
#pragma once

#include "ksx/kit/comparison.h"
#include "ksx/kit/finding.h"
#include "ksx/kit/format.h"
#include "ksx/kit/inventory.h"
#include "ksx/kit/merge.h"
#include "ksx/kit/packagefiles.h"
#include "ksx/kit/preview.h"
#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <vector>

namespace Ksx::Kit {

// The version of the schema. It grows when a program that reads the output could fail.
constexpr int JsonVersion = 1;

QJsonObject toJson(const Conflict& conflict);
QJsonObject toJson(const Difference& difference);
QJsonObject toJson(const Failure& failure);
QJsonObject toJson(const Finding& finding);
QJsonObject toJson(const NamedDependency& dependency);
QJsonObject toJson(const Dependency& dependency);
QJsonObject toJson(const Input& input);
QJsonObject toJson(const Usage& usage);
QJsonObject toJson(const Output& output);
QJsonObject toJson(const Resource& resource);
QJsonObject toJson(const Function& function);
QJsonObject toJson(const Graph& graph);
QJsonObject toJson(const Group& group);
QJsonObject toJson(const Content& content);
QJsonObject toJson(const ElementChange& change);
QJsonObject toJson(const UpdateStep& step);
QJsonObject toJson(const PreviewedFile& file);
QJsonObject toJson(const FormatItem& item);
QJsonObject toJson(const FormatMember& member);
QJsonObject toJson(const FormatStructure& structure);
QJsonObject toJson(const QString& file, const PackageHead& head);
QJsonObject toJson(const QString& file, const Inventory& inventory);

// Returns a list as an array, item by item.
template <class Item>
QJsonArray arrayOf(const std::vector<Item>& items)
{
    QJsonArray array;
    for (const Item& item : items)
        array.append(toJson(item));
    return array;
}

// Prints a document with one list of results, on one line. Prints each result when it comes, so
// that no more than one is held.
class JsonList
{
public:
    // Begins the document: the version of the schema, the command and the name of the list.
    JsonList(const char* command, const char* member);
    void add(const QJsonObject& result);
    // Ends the list and the document, with the failures and further members.
    void finish(const std::vector<Failure>& failures, const QJsonObject& members = {});

private:
    bool m_isEmpty = true;
};

} // namespace Ksx::Kit
