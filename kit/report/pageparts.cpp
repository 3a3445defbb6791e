#include "report/pageparts.h"

#include "drawing/markup.h"
#include "report/reportassets.h"
#include <QCryptographicHash>
#include <QLocale>

namespace Ksx::Kit {

namespace {

constexpr int MaximumCell = 300; // characters
const char* const NumberCell = "<td class=\"number\">";

// Returns the beginning of the head of a page. Nothing in a package may load or run anything, even
// if a name got through as markup: the browser takes styles and scripts of these sources alone.
QByteArray headBegin(const QString& title, const QByteArray& styles, const QByteArray& scripts)
{
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src " +
           styles + "; script-src " + scripts +
           "; base-uri 'none'; form-action 'none'\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<meta name=\"color-scheme\" content=\"light dark\">\n<title>" +
           cell(title) + "</title>\n";
}

// Returns the source of a style or a script in the page itself.
QByteArray sumOf(const char* text)
{
    return "'sha256-" + QCryptographicHash::hash(text, QCryptographicHash::Sha256).toBase64() +
           '\'';
}

} // namespace

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

QByteArray groupedNumber(qint64 size)
{
    return escaped(QLocale(QLocale::English).toString(size));
}

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

QByteArray severityText(Severity severity)
{
    const QByteArray word = escaped(wordOf(severity));
    return "<span class=\"" + word + "\">" + word + "</span>";
}

QByteArray placeText(const Finding& finding)
{
    QByteArray text = code(finding.place);
    if (finding.line > 0)
        text +=
            escaped(QStringLiteral(" line %1, column %2").arg(finding.line).arg(finding.column));
    return text;
}

HtmlTable::HtmlTable(const QString& caption, const QStringList& heads, const HtmlTableForm& form)
    : m_form(form), m_columns(static_cast<std::size_t>(heads.size()))
{
    m_begin = "<div class=\"scroll\" tabindex=\"0\" role=\"group\" aria-label=\"" + cell(caption) +
              "\"><table" + form.attributes + ">\n<caption>" + cell(caption) +
              "</caption>\n<thead><tr>";
    for (const QString& head : heads)
        m_begin += "<th scope=\"col\">" + escaped(head) + "</th>";
    m_begin += "</tr></thead>\n<tbody>\n";
}

void HtmlTable::add(const std::vector<QByteArray>& cells)
{
    Q_ASSERT(cells.size() == m_columns);
    ++m_addedRows;
    m_rows += "<tr>";
    for (std::size_t i = 0; i < cells.size(); ++i)
        m_rows += (i + m_form.numberColumns < m_columns ? "<td>" : NumberCell) + cells[i] + "</td>";
    m_rows += "</tr>\n";
}

QByteArray HtmlTable::text() const
{
    if (isEmpty())
        return {};
    QByteArray rest;
    if (m_count > m_addedRows)
        rest = "<tfoot><tr><td colspan=\"" + QByteArray::number(qulonglong(m_columns)) + "\">" +
               QByteArray::number(qulonglong(m_count - m_addedRows)) + " more</td></tr></tfoot>\n";
    return m_begin + m_rows + "</tbody>\n" + rest + "</table></div>\n";
}

QString counted(std::size_t number, const char* one, const char* many)
{
    return QStringLiteral("%1 %2").arg(number).arg(QLatin1String(number == 1 ? one : many));
}

QByteArray pageBegin(const QString& title, const QByteArray& root, const QStringList& scripts)
{
    QByteArray text = headBegin(title, "'self' file:", "'self' file:") +
                      "<link rel=\"stylesheet\" href=\"" + root + "report.css\">\n";
    for (const QString& script : scripts)
        text += "<script defer src=\"" + root + escaped(script) + "\"></script>\n";
    return text + "</head>\n";
}

QByteArray wholePageBegin(const QString& title)
{
    return headBegin(title, sumOf(ReportStyle), sumOf(ReportScript)) + "<style>" + ReportStyle +
           "</style>\n</head>\n";
}

QByteArray wholePageEnd()
{
    return QByteArray("<script>") + ReportScript + "</script>\n</body>\n</html>\n";
}

} // namespace Ksx::Kit
