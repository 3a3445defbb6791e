#include "report/packagepage.h"

#include "drawing/markup.h"
#include "report/pageparts.h"

namespace Ksx::Kit {

namespace {

QByteArray factsOf(const Inventory& inventory)
{
    const PackageHead& head = inventory.head;
    return "<dl class=\"facts\">\n" + fact("Kind", escaped(wordOf(head.kind))) +
           fact("Identifier", code(head.identifier)) + fact("Description", cell(head.description)) +
           fact("Author", cell(head.author)) + fact("Format", cell(head.formatVersion)) +
           fact("Updates", cell(inventory.updates.join(QChar(' ')))) +
           fact("Size", groupedNumber(head.size) + " bytes, " +
                            escaped(counted(inventory.objectCount, "object", "objects"))) +
           "</dl>\n";
}

QByteArray findingsText(const std::vector<Finding>& findings)
{
    HtmlTable table(QStringLiteral("Findings of the check"),
                    {QStringLiteral("Severity"), QStringLiteral("Finding"), QStringLiteral("Place"),
                     QStringLiteral("What to do")});
    for (const Finding& finding : findings) {
        const FindingKind& kind = finding.kind();
        if (table.hasRoom())
            table.add({severityText(kind.severity),
                       cell(finding.text) + " <code>" + kind.name + "</code>", placeText(finding),
                       escaped(QString::fromUtf8(kind.advice))});
    }
    return table.isEmpty() ? "<p>The check found nothing.</p>\n" : table.text();
}

QByteArray dependenciesText(const PageContent& content)
{
    HtmlTable table(QStringLiteral("Packages that this one depends on"),
                    {QStringLiteral("Name"), QStringLiteral("Way"), QStringLiteral("File"),
                     QStringLiteral("Path")});
    int number = 0;
    for (const Dependency& dependency : content.inventory->dependencies) {
        const QString page = content.dependencyPages.value(number++);
        if (!table.hasRoom())
            continue;
        const QByteArray name = code(dependency.named.filename);
        table.add({page.isEmpty() ? name : link(page, name), escaped(wordOf(dependency.way)),
                   dependency.isFound ? "found" : "<span class=\"error\">missing</span>",
                   code(dependency.path)});
    }
    return table.isEmpty() ? "<p>It depends on no other package.</p>\n" : table.text();
}

QString rangeOf(const Input& input)
{
    if (input.minimum.isEmpty() && input.maximum.isEmpty())
        return {};
    return QStringLiteral("%1 to %2").arg(input.minimum, input.maximum).trimmed();
}

QByteArray inputsText(const std::vector<Input>& inputs, const QString& path)
{
    HtmlTable table(QStringLiteral("Inputs of ") + path,
                    {QStringLiteral("Input"), QStringLiteral("Type"), QStringLiteral("Default"),
                     QStringLiteral("Range"), QStringLiteral("Widget"), QStringLiteral("Group"),
                     QStringLiteral("Label")});
    for (const Input& input : inputs)
        if (table.hasRoom())
            table.add({code(input.identifier) + (input.isDisabled ? " (off)" : ""),
                       escaped(nameOfType(input.type)), cell(input.defaultValue),
                       cell(rangeOf(input)), cell(input.widget), cell(input.group),
                       cell(input.label)});
    return table.text();
}

QByteArray outputsText(const std::vector<Output>& outputs, const QString& path)
{
    HtmlTable table(QStringLiteral("Outputs of ") + path,
                    {QStringLiteral("Output"), QStringLiteral("Usages"), QStringLiteral("Label")});
    for (const Output& output : outputs) {
        QStringList usages;
        for (const Usage& usage : output.usages)
            usages.append(QStringLiteral("%1 (%2)").arg(usage.name, usage.components));
        if (table.hasRoom())
            table.add({code(output.identifier) + (output.isDisabled ? " (off)" : ""),
                       cell(usages.join(QStringLiteral(", "))), cell(output.label)});
    }
    return table.text();
}

QByteArray figure(const PageObject& object)
{
    if (object.picture.isEmpty())
        return "<p class=\"note\">The page has pictures enough; <code>ksx draw --graph</code> "
               "draws this one.</p>\n";
    return "<figure class=\"picture\"><div class=\"view\" tabindex=\"0\" role=\"group\" "
           "aria-label=\"Picture of " +
           cell(object.path) + "\">\n" + object.picture + "</div>\n<figcaption>" +
           escaped(object.pictureNote) + "</figcaption></figure>\n";
}

QByteArray objectText(const PageObject& object)
{
    const QByteArray anchor = escaped(object.anchor);
    const QString label = object.graph != nullptr ? object.graph->label : object.function->label;
    QByteArray text = "<section class=\"object\" aria-labelledby=\"" + anchor + "\">\n<h2 id=\"" +
                      anchor + "\"><span class=\"kind\">" +
                      (object.graph != nullptr ? "Graph" : "Function") + "</span> " +
                      cell(object.path) + "</h2>\n";
    if (!label.isEmpty())
        text += "<p>" + cell(label) + "</p>\n";
    if (object.graph == nullptr)
        return text + "<p>Computes " + escaped(nameOfType(object.function->type)) + ".</p>\n" +
               figure(object) + inputsText(object.function->inputs, object.path) + "</section>\n";
    if (!object.graph->description.isEmpty())
        text += "<p class=\"description\">" + cell(object.graph->description) + "</p>\n";
    return text + figure(object) + inputsText(object.graph->inputs, object.path) +
           outputsText(object.graph->outputs, object.path) + "</section>\n";
}

QByteArray objectList(const PageContent& content)
{
    QByteArray text;
    for (const PageObject& object : content.objects)
        text += "<li>" + link(QChar('#') + object.anchor, cell(object.path)) +
                (object.graph != nullptr ? " <span class=\"kind\">graph</span>"
                                         : " <span class=\"kind\">function</span>") +
                "</li>\n";
    if (content.leftOut > 0)
        text += "<li>" + QByteArray::number(qulonglong(content.leftOut)) +
                " more, which are left out</li>\n";
    return text.isEmpty() ? text : "<ul class=\"contents\">\n" + text + "</ul>\n";
}

QByteArray resourcesText(const std::vector<Resource>& resources)
{
    HtmlTable table(QStringLiteral("Resources"),
                    {QStringLiteral("Resource"), QStringLiteral("Format"), QStringLiteral("File"),
                     QStringLiteral("Bytes"), QStringLiteral("Path")});
    for (const Resource& resource : resources)
        if (table.hasRoom())
            table.add({code(resource.identifier), cell(resource.format),
                       resource.isFound ? "found" : "<span class=\"error\">missing</span>",
                       groupedNumber(resource.size), code(resource.path)});
    return table.text();
}

} // namespace

QByteArray pageText(const PageContent& content)
{
    QByteArray text =
        pageBegin(content.title, "../", {QStringLiteral("users.js"), QStringLiteral("report.js")}) +
        "<body data-page=\"" + escaped(content.page) +
        "\">\n<a class=\"skip\" href=\"#main\">Skip to the content</a>\n<header>\n"
        "<nav aria-label=\"Report\"><a href=\"../index.html\">All packages</a></nav>\n<h1>" +
        cell(content.title) + "</h1>\n<p class=\"file\">" + escaped(content.file) +
        "</p>\n</header>\n<main id=\"main\">\n";
    if (content.inventory != nullptr)
        text += section("about", "Package", factsOf(*content.inventory) + objectList(content));
    text += section("findings", "Findings", findingsText(content.findings));
    if (content.inventory != nullptr)
        text += section("dependencies", "Dependencies", dependenciesText(content));
    text += section("users", "Used by",
                    "<div id=\"user-list\"><noscript>The list needs "
                    "JavaScript.</noscript></div>\n");
    for (const PageObject& object : content.objects)
        text += objectText(object);
    return text + section("resources", "Resources", resourcesText(content.resources)) +
           "</main>\n</body>\n</html>\n";
}

} // namespace Ksx::Kit
