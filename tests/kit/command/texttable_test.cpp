#include "command/texttable.h"

#include <gtest/gtest.h>

using Ksx::Kit::cellText;
using Ksx::Kit::lineText;
using Ksx::Kit::TextTable;

namespace {

TextTable threeColumns()
{
    return TextTable({{"NAME"}, {"SIZE", TextTable::Align::Right}, {"FILE"}});
}

} // namespace

TEST(TextTable, HasColumnsAsWideAsTheirWidestCell)
{
    TextTable table = threeColumns();
    table.add({"a", "1", "x"});
    table.add({"abcdef", "12345", "y"});

    EXPECT_EQ(table.text(), "NAME     SIZE  FILE\n"
                            "a           1  x\n"
                            "abcdef  12345  y\n");
}

TEST(TextTable, LeavesOutAColumnWithoutACell)
{
    TextTable table = threeColumns();
    table.add({"a", "", "x"});

    EXPECT_EQ(table.text(2), "  NAME  FILE\n"
                             "  a     x\n");
}

TEST(TextTable, IsNothingWithoutRows)
{
    EXPECT_EQ(threeColumns().text(), "");
}

TEST(TextTable, CutsLongTextsButInTheLastColumn)
{
    TextTable table({{"A"}, {"B"}});
    table.add({QString(100, 'x'), QString(100, 'y')});

    const QString line = table.text().section('\n', 1, 1);

    EXPECT_EQ(line, QString(57, 'x') + "...  " + QString(100, 'y'));
}

TEST(CellText, OfSixtyCharactersIsWhole)
{
    EXPECT_EQ(cellText(QString(60, 'x')), QString(60, 'x'));
}

TEST(LineText, SteersNoTerminal)
{
    EXPECT_EQ(lineText(QString::fromLatin1("a\n\tb\x1B[0m\x9B")), "a  b?[0m?");
}
