// Tables of text for people.
#pragma once

#include <QString>
#include <QStringList>
#include <vector>

namespace Ksx::Kit {

// Returns a text of one line that steers no terminal: blanks take the place of line ends and
// tabulators, and "?" that of all other control characters.
QString lineText(const QString& text);
// Returns the same, cut to the size of a cell of a table.
QString cellText(const QString& text);

// Rows of cells, in columns that are as wide as their widest cell. A column that is empty in all
// rows is left out. Long texts are cut, but for those of the last column, which nothing follows.
class TextTable
{
public:
    enum class Align
    {
        Left,
        Right, // for numbers
    };
    struct Column
    {
        QString head;
        Align align = Align::Left;
    };

    explicit TextTable(std::vector<Column> columns) : m_columns(std::move(columns)) {}

    // Adds a row with a cell for each column.
    void add(const QStringList& cells);
    bool isEmpty() const { return m_rows.empty(); }

    // Returns the lines with that many blanks in front of each. The heads are the first line.
    // Returns an empty text without rows.
    QString text(int indent = 0) const;

private:
    QString line(const QStringList& cells, const std::vector<int>& widths, int indent) const;

    std::vector<Column> m_columns;
    std::vector<QStringList> m_rows;
};

} // namespace Ksx::Kit
