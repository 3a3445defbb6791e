// The index of a report, and the data that its scripts read.
#include "drawing/markup.h"
#include "ksx/kit/drawing.h"
#include "ksx/kit/report.h"
#include "report/pageparts.h"
#include "report/reportassets.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <map>

namespace Ksx::Kit {

namespace {

// Returns the text without halves of characters, which a script file cannot have.
QString soundText(const QString& text)
{
    QString sound = text;
    for (int i = 0; i < sound.size(); ++i) {
        const bool isPair = sound.at(i).isHighSurrogate() && i + 1 < sound.size() &&
                            sound.at(i + 1).isLowSurrogate();
        if (isPair)
            ++i;
        else if (sound.at(i).isSurrogate())
            sound[i] = QChar(0xFFFD);
    }
    return sound;
}

QByteArray scriptOf(const char* name, const QJsonDocument& data)
{
    return QByteArray("const ") + name + " = " + data.toJson(QJsonDocument::Compact) + ";\n";
}

QByteArray searchData(const std::vector<ReportEntry>& entries)
{
    QJsonArray packages;
    for (const ReportEntry& entry : entries) {
        QJsonArray objects;
        for (const ReportObject& object : entry.objects)
            objects.append(QJsonArray{object.kind, soundText(object.name), soundText(object.label),
                                      object.anchor});
        packages.append(QJsonObject{{"page", entry.page},
                                    {"title", soundText(entry.title)},
                                    {"file", soundText(entry.file)},
                                    {"description", soundText(entry.description)},
                                    {"objects", objects}});
    }
    return scriptOf("ksxLibrary", QJsonDocument(packages));
}

QByteArray userData(const std::vector<ReportEntry>& entries)
{
    std::map<QString, QJsonArray> users;
    for (const ReportEntry& entry : entries)
        for (const QString& used : entry.uses)
            users[used].append(QJsonArray{entry.page, soundText(entry.title)});
    QJsonObject data;
    for (const auto& [page, list] : users)
        data.insert(page, list);
    return scriptOf("ksxUsers", QJsonDocument(data));
}

QByteArray numberCell(std::size_t number)
{
    return "<td class=\"number\">" + QByteArray::number(qulonglong(number)) + "</td>";
}

QByteArray findingsCell(const ReportEntry& entry)
{
    QByteArray text;
    if (entry.errors > 0)
        text += "<span class=\"error\">" + escaped(counted(entry.errors, "error", "errors")) +
                "</span> ";
    if (entry.warnings > 0)
        text += "<span class=\"warning\">" +
                escaped(counted(entry.warnings, "warning", "warnings")) + "</span>";
    return "<td>" + text + "</td>";
}

QByteArray rowOf(const ReportEntry& entry)
{
    QByteArray text = "<tr data-page=\"" + escaped(entry.page) + "\"><td><a href=\"packages/" +
                      escaped(entry.page) + "\">" + escaped(entry.title) + "</a>";
    if (!entry.isReadable)
        text += " <span class=\"error\">unreadable</span>";
    if (!entry.description.isEmpty())
        text += "<div class=\"note\">" + escaped(entry.description) + "</div>";
    return text + "</td><td><code>" + escaped(entry.file) + "</code></td>" +
           numberCell(entry.graphs) + numberCell(entry.functions) + numberCell(entry.inputs) +
           numberCell(entry.dependencies) + findingsCell(entry) + "</tr>\n";
}

QByteArray indexText(const std::vector<ReportEntry>& entries)
{
    QByteArray text =
        pageBegin(QStringLiteral("Packages"), "",
                  {QStringLiteral("library.js"), QStringLiteral("report.js")}) +
        "<body>\n<a class=\"skip\" href=\"#main\">Skip to the content</a>\n<header>\n"
        "<h1>Packages</h1>\n<form class=\"search\" role=\"search\"><label for=\"search\">Search"
        "</label><input id=\"search\" type=\"search\" autocomplete=\"off\" spellcheck=\"false\" "
        "placeholder=\"package, graph, input, resource\">"
        "<span id=\"status\" role=\"status\"></span></form>\n</header>\n<main id=\"main\">\n"
        "<div class=\"scroll\"><table>\n<thead><tr>";
    for (const char* head :
         {"Package", "File", "Graphs", "Functions", "Inputs", "Dependencies", "Findings"})
        text += QByteArray("<th scope=\"col\">") + head + "</th>";
    text += "</tr></thead>\n<tbody>\n";
    for (const ReportEntry& entry : entries)
        text += rowOf(entry);
    return text + "</tbody></table></div>\n</main>\n</body>\n</html>\n";
}

} // namespace

std::vector<ReportFile> LibraryReport::indexOf(const std::vector<ReportEntry>& entries)
{
    return {{QStringLiteral("report.css"), ReportStyle + svgStyle()},
            {QStringLiteral("report.js"), ReportScript},
            {QStringLiteral("library.js"), searchData(entries)},
            {QStringLiteral("users.js"), userData(entries)},
            {QStringLiteral("index.html"), indexText(entries)}};
}

} // namespace Ksx::Kit
