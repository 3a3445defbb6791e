#include "drawing/markup.h"

#include "drawing/textwidth.h"
#include <gtest/gtest.h>

using Ksx::Kit::escaped;
using Ksx::Kit::fittingText;
using Ksx::Kit::numberText;
using Ksx::Kit::textWidth;

TEST(Markup, CharactersWithAMeaningAreEscaped)
{
    EXPECT_EQ(escaped("</script> & \"a\" 'b'"), "&lt;/script&gt; &amp; &quot;a&quot; &#39;b&#39;");
}

TEST(Markup, LettersOutsideOfAsciiStayAsTheyAre)
{
    EXPECT_EQ(escaped(QString::fromUtf8("Åsa \u4e2d \U0001F600")), "Åsa \u4e2d \U0001F600");
}

TEST(Markup, CharactersThatNoDocumentMayHaveAreReplaced)
{
    EXPECT_EQ(escaped(QString(QChar(0x01)) + QChar(0x0B) + QChar(0x85) + QChar(0xFFFF)),
              "\uFFFD\uFFFD\uFFFD\uFFFD");
}

TEST(Markup, HalfOfACharacterIsReplaced)
{
    EXPECT_EQ(escaped(QString(QChar(0xD800)) + QChar('a') + QChar(0xDC80)), "\uFFFDa\uFFFD");
}

TEST(Markup, NumbersHaveOneDigitBehindThePoint)
{
    EXPECT_EQ(numberText(12.34), "12.3");
    EXPECT_EQ(numberText(12.96), "13");
    EXPECT_EQ(numberText(-0.3), "-0.3");
    EXPECT_EQ(numberText(-0.01), "0");
    EXPECT_EQ(numberText(-7.5), "-7.5");
    EXPECT_EQ(numberText(1e7), "10000000");
}

TEST(TextWidth, GrowsWithTheTextTheSizeAndTheWeight)
{
    EXPECT_LT(textWidth("il", 10), textWidth("mw", 10));
    EXPECT_DOUBLE_EQ(textWidth("mw", 20), 2 * textWidth("mw", 10));
    EXPECT_GT(textWidth("mw", 10, true), textWidth("mw", 10));
}

TEST(TextWidth, ATextThatFitsIsNotCut)
{
    EXPECT_EQ(fittingText("blend", textWidth("blend", 10), 10), "blend");
}

TEST(TextWidth, ALongTextEndsWithAnEllipsisAndFits)
{
    const QString cut = fittingText(QString(100000, QChar('m')), 60, 10);

    EXPECT_TRUE(cut.endsWith(QChar(0x2026)));
    EXPECT_LE(textWidth(cut, 10), 60);
    EXPECT_GT(cut.size(), 3);
}

TEST(TextWidth, ControlCharactersBecomeBlanks)
{
    EXPECT_EQ(fittingText("a\nb\tc", 100, 10), "a b c");
}
