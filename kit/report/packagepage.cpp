#include "report/packagepage.h"

#include "drawing/markup.h"
#include <QLocale>

namespace Ksx::Kit {

namespace {

constexpr std::size_t MaximumRows = 1000;
constexpr int MaximumCell = 300; // characters

// Returns the text of a cell, which is cut if it is long.
QByteArray cell(const QString& text)
{
    return escaped(text.size() > MaximumCell ? text.left(MaximumCell) + QChar(0x2026) : text);
}

QByteArray code(const QString& text)
{
    return text.isEmpty() ? QByteArray() : "<code>" + cell(text) + "</code>";
}

QByteArray link(const QString& address, const QByteArray& text)
{
    return "<a href=\"" + escaped(address) + "\">" + text + "</a>";
}

QByteArray sizeText(qint64 size)
{
    return escaped(QLocale(QLocale::English).toString(size));
}

// Returns a section with a heading, or nothing for a section without content.
QByteArray section(const char* name, const QByteArray& heading, const QByteArray& content)
{
    if (content.isEmpty())
        return {};
    return QByteArray("<section aria-labelledby=\"") + name + "\">\n<h2 id=\"" + name + "\">" +
           heading + "</h2>\n" + content + "</section>\n";
}

QByteArray fact(const char* name, const QByteArray& value)
{
    return value.isEmpty() ? QByteArray()
                           : QByteArray("<dt>") + name + "</dt><dd>" + value + "</dd>\n";
}

QByteArray factsOf(const Inventory& inventory)
{
    const PackageHead& head = inventory.head;
    return "<dl class=\"facts\">\n" + fact("Kind", escaped(wordOf(head.kind))) +
           fact("Identifier", code(head.identifier)) + fact("Description", cell(head.description)) +
           fact("Author", cell(head.author)) + fact("Format", cell(head.formatVersion)) +
           fact("Updates", cell(inventory.updates.join(QChar(' ')))) +
           fact("Size", sizeText(head.size) + " bytes, " +
                            escaped(counted(inventory.objectCount, "object", "objects"))) +
           "</dl>\n";
}

QByteArray placeOfFinding(const Finding& finding)
{
    QByteArray text = code(finding.place);
    if (finding.line > 0)
        text +=
            escaped(QStringLiteral(" line %1, column %2").arg(finding.line).arg(finding.column));
    return text;
}

QByteArray findingsText(const std::vector<Finding>& findings)
{
    HtmlTable table(QStringLiteral("Findings of the check"),
                    {QStringLiteral("Severity"), QStringLiteral("Finding"), QStringLiteral("Place"),
                     QStringLiteral("What to do")});
    for (const Finding& finding : findings) {
        const FindingKind& kind = finding.kind();
        const QByteArray severity = escaped(wordOf(kind.severity));
        if (table.hasRoom())
            table.add({"<span class=\"" + severity + "\">" + severity + "</span>",
                       cell(finding.text) + " <code>" + kind.name + "</code>",
                       placeOfFinding(finding), escaped(QString::fromUtf8(kind.advice))});
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
                       sizeText(resource.size), code(resource.path)});
    return table.text();
}

} // namespace

HtmlTable::HtmlTable(const QString& caption, const QStringList& heads)
    : m_columns(static_cast<std::size_t>(heads.size()))
{
    m_begin = "<div class=\"scroll\" tabindex=\"0\" role=\"group\" aria-label=\"" + cell(caption) +
              "\"><table>\n<caption>" + cell(caption) + "</caption>\n<thead><tr>";
    for (const QString& head : heads)
        m_begin += "<th scope=\"col\">" + escaped(head) + "</th>";
    m_begin += "</tr></thead>\n<tbody>\n";
}

bool HtmlTable::hasRoom()
{
    return ++m_count <= MaximumRows;
}

void HtmlTable::add(const std::vector<QByteArray>& cells)
{
    Q_ASSERT(cells.size() == m_columns);
    m_rows += "<tr>";
    for (const QByteArray& one : cells)
        m_rows += "<td>" + one + "</td>";
    m_rows += "</tr>\n";
}

QByteArray HtmlTable::text() const
{
    if (isEmpty())
        return {};
    QByteArray rest;
    if (m_count > MaximumRows)
        rest = "<tr><td colspan=\"" + QByteArray::number(qulonglong(m_columns)) + "\">" +
               QByteArray::number(qulonglong(m_count - MaximumRows)) + " more</td></tr>\n";
    return m_begin + m_rows + rest + "</tbody></table></div>\n";
}

QString counted(std::size_t number, const char* one, const char* many)
{
    return QStringLiteral("%1 %2").arg(number).arg(QLatin1String(number == 1 ? one : many));
}

QByteArray pageBegin(const QString& title, const QByteArray& root, const QStringList& scripts)
{
    // Nothing in a package may load or run anything, even if a name got through as markup.
    QByteArray text =
        "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
        "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
        "style-src 'self' file:; script-src 'self' file:; base-uri 'none'; form-action 'none'\">\n"
        "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
        "<meta name=\"color-scheme\" content=\"light dark\">\n<title>" +
        cell(title) + "</title>\n<link rel=\"stylesheet\" href=\"" + root + "report.css\">\n";
    for (const QString& script : scripts)
        text += "<script defer src=\"" + root + escaped(script) + "\"></script>\n";
    return text + "</head>\n";
}

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
