#include "report/filenames.h"

#include <gtest/gtest.h>

using Ksx::Kit::anchorOf;
using Ksx::Kit::safeFileName;
using Ksx::Kit::UniqueFileNames;

TEST(FileNames, LettersDigitsAndPlainSignsStay)
{
    EXPECT_EQ(safeFileName("wood.Oak_2-a"), "wood.Oak_2-a");
}

TEST(FileNames, AllOtherCharactersAreReplaced)
{
    EXPECT_EQ(safeFileName(QString::fromUtf8("../Ä b#?%\n")), "_.___b____");
}

TEST(FileNames, ANameIsNeverEmptyHiddenOrAnOption)
{
    EXPECT_EQ(safeFileName(""), "_");
    EXPECT_EQ(safeFileName(".."), "_.");
    EXPECT_EQ(safeFileName("-o"), "_o");
}

TEST(FileNames, ALongNameIsCut)
{
    EXPECT_EQ(safeFileName(QString(1000000, QChar('x'))).size(), 80);
}

TEST(FileNames, NoNameIsGivenTwice)
{
    UniqueFileNames names;

    EXPECT_EQ(names.nameFor("oak"), "oak");
    EXPECT_EQ(names.nameFor("oak"), "oak-2");
    EXPECT_EQ(names.nameFor("OAK"), "OAK-3");
    EXPECT_EQ(names.nameFor("oak-2"), "oak-2-2");
    EXPECT_EQ(names.nameFor("oak"), "oak-4");
}

TEST(FileNames, AnAnchorIsThatOfTheObjectWithoutItsDependency)
{
    EXPECT_EQ(anchorOf("pkg://lib/oak?dependency=5"), "g-lib/oak");
    EXPECT_EQ(anchorOf("lib/oak"), "g-lib/oak");
}

TEST(FileNames, DifferentPathsHaveDifferentAnchors)
{
    EXPECT_EQ(anchorOf("a b"), "g-a.20.b");
    EXPECT_EQ(anchorOf("a.20.b"), "g-a.2e.20.2e.b");
    EXPECT_EQ(anchorOf("\"><script>"), "g-.22..3e..3c.script.3e.");
}
