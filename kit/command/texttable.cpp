#include "command/texttable.h"

#include <algorithm>

namespace Ksx::Kit {

namespace {

constexpr int MaximumCell = 60; // characters
const QString Gap = QStringLiteral("  ");

} // namespace

QString lineText(const QString& text)
{
    QString line = text;
    for (QChar& c : line)
        if (c.category() == QChar::Other_Control)
            c = c.isSpace() ? QLatin1Char(' ') : QLatin1Char('?');
    return line;
}

QString cellText(const QString& text)
{
    const bool isLong = text.size() > MaximumCell;
    return lineText(isLong ? text.left(MaximumCell - 3) + QStringLiteral("...") : text);
}

void TextTable::add(const QStringList& cells)
{
    Q_ASSERT(static_cast<std::size_t>(cells.size()) == m_columns.size());
    QStringList row;
    for (const QString& cell : cells)
        row.append(row.size() + 1 < cells.size() ? cellText(cell) : lineText(cell));
    m_rows.push_back(row);
}

QString TextTable::line(const QStringList& cells, const std::vector<int>& widths, int indent) const
{
    QString line(indent, QLatin1Char(' '));
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        if (widths[i] == 0)
            continue;
        const QString& cell = cells[static_cast<int>(i)];
        if (m_columns[i].align == Align::Right)
            line += cell.rightJustified(widths[i]);
        else
            line += i + 1 < m_columns.size() ? cell.leftJustified(widths[i]) : cell;
        line += Gap;
    }
    while (line.endsWith(QLatin1Char(' ')))
        line.chop(1);
    return line + QLatin1Char('\n');
}

QString TextTable::text(int indent) const
{
    if (isEmpty())
        return {};
    std::vector<int> widths(m_columns.size());
    QStringList heads;
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        for (const QStringList& row : m_rows)
            widths[i] = std::max(widths[i], static_cast<int>(row[static_cast<int>(i)].size()));
        if (widths[i] > 0)
            widths[i] = std::max(widths[i], static_cast<int>(m_columns[i].head.size()));
        heads.append(m_columns[i].head);
    }
    QString text = line(heads, widths, indent);
    for (const QStringList& row : m_rows)
        text += line(row, widths, indent);
    return text;
}

} // namespace Ksx::Kit
