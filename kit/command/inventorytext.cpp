#include "command/inventorytext.h"

#include "command/texttable.h"
#include <QLocale>

namespace Ksx::Kit {

namespace {

constexpr int Indent = 2;

QString fact(const char* name, const QString& value)
{
    if (value.isEmpty())
        return {};
    return QStringLiteral("  %1 %2\n").arg(QLatin1String(name), -14).arg(cellText(value));
}

QString count(std::size_t number, const char* one, const char* many)
{
    return QStringLiteral("%1 %2").arg(number).arg(QLatin1String(number == 1 ? one : many));
}

QString factsOf(const Inventory& inventory)
{
    const PackageHead& head = inventory.head;
    return fact("kind", wordOf(head.kind)) + fact("identifier", head.identifier) +
           fact("description", head.description) + fact("author", head.author) +
           fact("format", head.formatVersion) + fact("updater", head.updaterVersion) +
           fact("updates", inventory.updates.join(QLatin1Char(' '))) +
           fact("file uid", head.fileUid) + fact("version uid", head.versionUid) +
           fact("size", sizeText(head.size) + QStringLiteral(" bytes, ") +
                            count(inventory.objectCount, "object", "objects"));
}

QString foundText(bool isFound)
{
    return isFound ? QStringLiteral("found") : QStringLiteral("missing");
}

QString dependenciesText(const Inventory& inventory)
{
    TextTable table({{QStringLiteral("DEPENDENCY")},
                     {QStringLiteral("WAY")},
                     {QStringLiteral("FILE")},
                     {QStringLiteral("PATH")}});
    for (const Dependency& dependency : inventory.dependencies)
        table.add({dependency.named.filename, wordOf(dependency.way), foundText(dependency.isFound),
                   dependency.path});
    return table.isEmpty() ? QString() : QStringLiteral("\n") + table.text(Indent);
}

QString rangeText(const Input& input)
{
    if (input.minimum.isEmpty() && input.maximum.isEmpty())
        return {};
    return QStringLiteral("%1 to %2").arg(input.minimum, input.maximum).trimmed();
}

QString inputsText(const std::vector<Input>& inputs)
{
    TextTable table({{QStringLiteral("INPUT")},
                     {QStringLiteral("TYPE")},
                     {QStringLiteral("DEFAULT")},
                     {QStringLiteral("RANGE")},
                     {QStringLiteral("GROUP")},
                     {QStringLiteral("LABEL")}});
    for (const Input& input : inputs)
        table.add({input.identifier, nameOfType(input.type), input.defaultValue, rangeText(input),
                   input.group, input.label});
    return table.text(2 * Indent);
}

QString outputsText(const std::vector<Output>& outputs)
{
    TextTable table(
        {{QStringLiteral("OUTPUT")}, {QStringLiteral("USAGES")}, {QStringLiteral("LABEL")}});
    for (const Output& output : outputs) {
        QStringList usages;
        for (const Usage& usage : output.usages)
            usages.append(QStringLiteral("%1 (%2)").arg(usage.name, usage.components));
        table.add({output.identifier, usages.join(QStringLiteral(", ")), output.label});
    }
    return table.text(2 * Indent);
}

// Writes the objects of a package with the way to them.
class ContentText
{
public:
    QString take(const Content& content)
    {
        add(content, QString());
        return m_text;
    }

private:
    // Objects differ at the end of a long path.
    static QString pathOf(const QString& outer, const QString& identifier)
    {
        constexpr int maximum = 50;
        const QString path =
            outer.isEmpty() ? identifier : QStringLiteral("%1/%2").arg(outer, identifier);
        return path.size() > maximum ? QStringLiteral("...") + path.right(maximum - 3) : path;
    }

    void addTitle(const char* kind, const QString& path, const QString& facts)
    {
        m_text +=
            QStringLiteral("\n  %1 %2 (%3)\n").arg(QLatin1String(kind), cellText(path), facts);
    }

    void add(const Graph& graph, const QString& outer)
    {
        const QString path = pathOf(outer, graph.identifier);
        addTitle("graph", path,
                 QStringList({count(graph.inputs.size(), "input", "inputs"),
                              count(graph.outputs.size(), "output", "outputs"),
                              count(graph.nodeCount, "node", "nodes"),
                              count(graph.connectionCount, "connection", "connections")})
                     .join(QStringLiteral(", ")));
        m_text += inputsText(graph.inputs) + outputsText(graph.outputs);
        add(graph.content, path);
    }

    void add(const Function& function, const QString& outer)
    {
        addTitle("function", pathOf(outer, function.identifier),
                 QStringLiteral("%1, %2").arg(nameOfType(function.type),
                                              count(function.inputs.size(), "input", "inputs")));
        m_text += inputsText(function.inputs);
    }

    void addResources(const std::vector<Resource>& resources, const QString& outer)
    {
        TextTable table({{QStringLiteral("RESOURCE")},
                         {QStringLiteral("FORMAT")},
                         {QStringLiteral("FILE")},
                         {QStringLiteral("SIZE"), TextTable::Align::Right},
                         {QStringLiteral("PATH")}});
        for (const Resource& resource : resources)
            table.add({pathOf(outer, resource.identifier), resource.format,
                       resource.source.isEmpty() || resource.isFound ? foundText(resource.isFound)
                                                                     : resource.source,
                       resource.isFound ? sizeText(resource.size) : QString(), resource.path});
        if (!table.isEmpty())
            m_text += QStringLiteral("\n") + table.text(Indent);
    }

    void add(const Content& content, const QString& outer)
    {
        for (const Graph& graph : content.graphs)
            add(graph, outer);
        for (const Function& function : content.functions)
            add(function, outer);
        addResources(content.resources, outer);
        for (const Group& group : content.groups)
            add(group.content, pathOf(outer, group.identifier));
    }

    QString m_text;
};

} // namespace

QString sizeText(qint64 bytes)
{
    return QLocale(QLocale::English).toString(bytes);
}

QString inventoryText(const QString& file, const Inventory& inventory)
{
    return lineText(file) + QStringLiteral("\n") + factsOf(inventory) +
           dependenciesText(inventory) + ContentText().take(inventory.content);
}

} // namespace Ksx::Kit
