#include "command/jsonoutput.h"

#include <QJsonDocument>
#include <iostream>

namespace Ksx::Kit {

namespace {

QString wordOf(MemberKind kind)
{
    switch (kind) {
    case MemberKind::Structure:
        return QStringLiteral("structure");
    case MemberKind::List:
        return QStringLiteral("list");
    case MemberKind::Union:
        return QStringLiteral("union");
    default:
        return QStringLiteral("value");
    }
}

QJsonObject locationJson(const Location& location)
{
    return {{"place", location.place},
            {"within", QJsonArray::fromStringList(location.within)},
            {"object", location.object},
            {"name", location.name},
            {"member", location.member}};
}

QJsonValue numberOrNull(const std::optional<unsigned>& number)
{
    return number ? QJsonValue(qint64(*number)) : QJsonValue();
}

} // namespace

QJsonObject toJson(const Conflict& conflict)
{
    QJsonObject object = locationJson(conflict);
    object["base"] = conflict.base;
    object["ours"] = conflict.ours;
    object["theirs"] = conflict.theirs;
    object["reason"] = conflict.reason;
    return object;
}

QJsonObject toJson(const Difference& difference)
{
    QJsonObject object = locationJson(difference);
    object["kind"] = wordOf(difference.kind);
    object["before"] = difference.before;
    object["after"] = difference.after;
    object["nodeBefore"] = numberOrNull(difference.nodeBefore);
    object["nodeAfter"] = numberOrNull(difference.nodeAfter);
    return object;
}

QJsonObject toJson(const Finding& finding)
{
    const FindingKind& kind = finding.kind();
    return {{"code", kind.name},    {"severity", wordOf(kind.severity)}, {"place", finding.place},
            {"line", finding.line}, {"column", finding.column},          {"text", finding.text},
            {"advice", kind.advice}};
}

QJsonObject toJson(const NamedDependency& dependency)
{
    return {{"filename", dependency.filename}, {"uid", dependency.uid}};
}

QJsonObject toJson(const Dependency& dependency)
{
    QJsonObject object = toJson(dependency.named);
    object["way"] = wordOf(dependency.way);
    object["path"] = dependency.path;
    object["found"] = dependency.isFound;
    return object;
}

QJsonObject toJson(const Input& input)
{
    return {{"identifier", input.identifier}, {"uid", qint64(input.uid)},
            {"label", input.label},           {"group", input.group},
            {"type", nameOfType(input.type)}, {"default", input.defaultValue},
            {"widget", input.widget},         {"minimum", input.minimum},
            {"maximum", input.maximum},       {"disabled", input.isDisabled}};
}

QJsonObject toJson(const Usage& usage)
{
    return {{"name", usage.name}, {"components", usage.components}};
}

QJsonObject toJson(const Output& output)
{
    return {{"identifier", output.identifier},
            {"uid", qint64(output.uid)},
            {"label", output.label},
            {"usages", arrayOf(output.usages)},
            {"disabled", output.isDisabled}};
}

QJsonObject toJson(const Resource& resource)
{
    return {{"identifier", resource.identifier}, {"uid", qint64(resource.uid)},
            {"format", resource.format},         {"path", resource.path},
            {"found", resource.isFound},         {"size", resource.size},
            {"source", resource.source}};
}

QJsonObject toJson(const Function& function)
{
    return {{"identifier", function.identifier},
            {"uid", qint64(function.uid)},
            {"label", function.label},
            {"type", nameOfType(function.type)},
            {"inputs", arrayOf(function.inputs)}};
}

QJsonObject toJson(const Graph& graph)
{
    return {{"identifier", graph.identifier},
            {"uid", qint64(graph.uid)},
            {"label", graph.label},
            {"description", graph.description},
            {"inputs", arrayOf(graph.inputs)},
            {"outputs", arrayOf(graph.outputs)},
            {"nodes", qint64(graph.nodeCount)},
            {"connections", qint64(graph.connectionCount)},
            {"content", toJson(graph.content)}};
}

QJsonObject toJson(const Group& group)
{
    return {{"identifier", group.identifier},
            {"uid", qint64(group.uid)},
            {"content", toJson(group.content)}};
}

QJsonObject toJson(const Content& content)
{
    return {{"groups", arrayOf(content.groups)},
            {"graphs", arrayOf(content.graphs)},
            {"functions", arrayOf(content.functions)},
            {"resources", arrayOf(content.resources)}};
}

QJsonObject toJson(const ElementChange& change)
{
    return {{"kind", wordOf(change.kind)}, {"place", change.place},   {"element", change.element},
            {"line", change.line},         {"column", change.column}, {"old", change.oldText},
            {"new", change.newText}};
}

QJsonObject toJson(const UpdateStep& step)
{
    return {
        {"version", step.version}, {"kind", wordOf(step.kind)}, {"changes", arrayOf(step.changes)}};
}

QJsonObject toJson(const PreviewedFile& file)
{
    return {{"file", file.file},
            {"dependency", file.isDependency},
            {"steps", arrayOf(file.steps)},
            {"reading", arrayOf(file.reading)},
            {"references", arrayOf(file.references)},
            {"writing", arrayOf(file.writing)},
            {"target", file.target},
            {"exists", file.targetExists},
            {"changed", file.isChanged},
            {"replaced", file.isReplaced},
            {"size", file.size},
            {"sha256", QString::fromLatin1(file.sha256)},
            {"newUids", file.hasNewUids},
            {"error", file.error}};
}

QJsonObject toJson(const FormatItem& item)
{
    return {{"element", QString::fromStdString(item.element)},
            {"structure", QString::fromStdString(item.structure)}};
}

QJsonObject toJson(const FormatMember& member)
{
    QJsonObject object{{"element", QString::fromStdString(member.element)},
                       {"kind", wordOf(member.kind)},
                       {"required", member.isRequired}};
    if (member.kind == MemberKind::Value) {
        object["type"] = QString::fromStdString(member.type);
        object["default"] = QString::fromStdString(member.defaultValue);
        object["filePath"] = member.isFilePath;
    } else if (member.kind == MemberKind::Structure) {
        object["structure"] = QString::fromStdString(member.structure);
    } else {
        object["items"] = arrayOf(member.items);
    }
    return object;
}

QJsonObject toJson(const FormatStructure& structure)
{
    return {{"name", QString::fromStdString(structure.name)},
            {"members", arrayOf(structure.members)}};
}

QJsonObject toJson(const Failure& failure)
{
    return {{"file", failure.file}, {"reason", failure.reason}};
}

QJsonObject toJson(const QString& file, const PackageHead& head)
{
    return {{"file", file},
            {"kind", wordOf(head.kind)},
            {"size", head.size},
            {"identifier", head.identifier},
            {"description", head.description},
            {"author", head.author},
            {"formatVersion", head.formatVersion},
            {"updaterVersion", head.updaterVersion},
            {"fileUID", head.fileUid},
            {"versionUID", head.versionUid},
            {"dependencies", arrayOf(head.dependencies)}};
}

QJsonObject toJson(const QString& file, const Inventory& inventory)
{
    QJsonObject object = toJson(file, inventory.head);
    object["dependencies"] = arrayOf(inventory.dependencies);
    object["updates"] = QJsonArray::fromStringList(inventory.updates);
    object["objects"] = qint64(inventory.objectCount);
    object["content"] = toJson(inventory.content);
    return object;
}

JsonList::JsonList(const char* command, const char* member)
{
    std::cout << "{\"ksx\":" << JsonVersion << ",\"command\":\"" << command << "\",\"" << member
              << "\":[";
}

void JsonList::add(const QJsonObject& result)
{
    const QByteArray text = QJsonDocument(result).toJson(QJsonDocument::Compact);
    std::cout << (m_isEmpty ? "" : ",");
    std::cout.write(text.constData(), text.size());
    m_isEmpty = false;
}

void JsonList::finish(const std::vector<Failure>& failures, const QJsonObject& members)
{
    QJsonObject end = members;
    end["failures"] = arrayOf(failures);
    const QByteArray text = QJsonDocument(end).toJson(QJsonDocument::Compact);
    std::cout << "],";
    std::cout.write(text.constData() + 1, text.size() - 1); // without the brace of the begin
    std::cout << '\n';
}

} // namespace Ksx::Kit
