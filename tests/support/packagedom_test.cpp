#include "support/packagedom.h"

#include <gtest/gtest.h>

using TestSupport::countAt;
using TestSupport::elementsText;
using TestSupport::textsAt;
using TestSupport::withUidsNumbered;

namespace {

const std::string Document =
    R"(<package><content><graph><identifier v="a"/><uid v="7"/></graph>)"
    R"(<group><content><graph><identifier v="b &amp; c"/><uid v="8"/></graph></content></group>)"
    R"(<graph><identifier v="d"/><uid v="9"/></graph></content></package>)";

TEST(PackageDom, FindsTheTextsAtAPath)
{
    EXPECT_EQ(textsAt(Document, "content/graph/identifier"), "a d");
    EXPECT_EQ(textsAt(Document, "content/*/graph/identifier"), "a b & c d");
    EXPECT_EQ(textsAt(Document, "content/function/identifier"), "");
}

TEST(PackageDom, FindsTheElementsAtAPath)
{
    EXPECT_EQ(elementsText(Document, "content/group/content/graph"),
              R"(<graph><identifier v="b &amp; c"/><uid v="8"/></graph>)");
    EXPECT_EQ(countAt(Document, "content/graph"), 2);
    EXPECT_EQ(countAt(Document, "content/function"), 0);
}

TEST(UidNumbering, GoesByTheOrderOfUids)
{
    EXPECT_EQ(withUidsNumbered(R"(<uid v="70"/><entry v="50"/><connRef><value v="70"/></connRef>)"),
              R"(<uid v="u1"/><entry v="u2"/><connRef><value v="u1"/></connRef>)");
}

TEST(UidNumbering, KnowsPackagesApart)
{
    EXPECT_EQ(withUidsNumbered(
                  R"(<dependency><filename v="a.obl"/><uid v="7"/><type v="package"/></dependency>)"
                  R"(<uid v="7"/><value v="pkg://a?x=1&amp;dependency=7"/>)"),
              R"(<dependency><filename v="a.obl"/><uid v="p1"/><type v="package"/></dependency>)"
              R"(<uid v="u1"/><value v="pkg://a?x=1&amp;dependency=p1"/>)");
}

TEST(UidNumbering, LeavesZeroAndValues)
{
    const std::string text = R"(<uid v="0"/><format><value v="7"/></format><fileUID v="7"/>)";

    EXPECT_EQ(withUidsNumbered(text), text);
}

TEST(UidNumbering, HidesTheUidOfTheFile)
{
    EXPECT_EQ(withUidsNumbered(R"(<fileUID v="{01-ab}"/>)"), R"(<fileUID v="file"/>)");
}

} // namespace
