// The parts that pages of reports are made of. All of them are HTML.
#pragma once

#include "ksx/kit/finding.h"
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <cstddef>
#include <vector>

namespace Ksx::Kit {

// Returns the text of a cell, which is cut if it is long.
QByteArray cell(const QString& text);
// Returns a cell of a name or a path, or nothing for an empty one.
QByteArray code(const QString& text);
QByteArray link(const QString& address, const QByteArray& text);
// Returns a number with a comma behind each thousand.
QByteArray groupedNumber(qint64 size);
// Returns a section with a heading, or nothing for a section without content.
QByteArray section(const char* name, const QByteArray& heading, const QByteArray& content);
// Returns a row of a list of facts, or nothing for one without a value.
QByteArray fact(const char* name, const QByteArray& value);

// Returns the word for a severity in its colour.
QByteArray severityText(Severity severity);
// Returns where a finding is: its data path, and its line as far as that is known.
QByteArray placeText(const Finding& finding);

// Returns "1 node", "2 nodes".
QString counted(std::size_t number, const char* one, const char* many);

// Returns the beginning of a page, up to the content of its body. `root` leads to the folder of the
// report: "" or "../". The scripts are file names in it.
QByteArray pageBegin(const QString& title, const QByteArray& root, const QStringList& scripts);

// Returns the beginning of a page that needs no other file, up to the content of its body.
QByteArray wholePageBegin(const QString& title);
// Returns the end of such a page, behind the content of its body.
QByteArray wholePageEnd();

// The form of a table.
struct HtmlTableForm
{
    // The last columns are of numbers.
    std::size_t numberColumns = 0;
    std::size_t maximumRows = 1000;
    // Such as " id=\"table\"".
    const char* attributes = "";
};

// Writes a table of a bounded number of rows. Each cell is HTML.
class HtmlTable
{
public:
    HtmlTable(const QString& caption, const QStringList& heads, const HtmlTableForm& form = {});

    // Returns false beyond the bound. The row is then only counted.
    bool hasRoom() { return ++m_count <= m_form.maximumRows; }
    // Counts rows that are not there.
    void leaveOut(std::size_t rows) { m_count += rows; }
    void add(const std::vector<QByteArray>& cells);
    bool isEmpty() const { return m_count == 0; }
    QByteArray text() const;

private:
    HtmlTableForm m_form;
    QByteArray m_begin;
    QByteArray m_rows;
    std::size_t m_columns;
    std::size_t m_count = 0;     // all rows
    std::size_t m_addedRows = 0; // the rows that are there
};

} // namespace Ksx::Kit
