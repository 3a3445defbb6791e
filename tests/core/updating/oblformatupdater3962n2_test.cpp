#include "updating/oblformatupdater3962n2.h"

#include "support/updaterhelper.h"
#include <gtest/gtest.h>

namespace {

using namespace TestSupport;

const Ksx::Core::OBLFormatUpdater3962n2 Updater;

} // namespace

TEST(OBLFormatUpdater3962n2, SwapsTheNamesOfOuterAndInnerElements)
{
    expectGoldenUpdate(Updater, "3962n2/configurations");
}

TEST(OBLFormatUpdater3962n2, LeavesAFileWithoutConfigurationAsItIs)
{
    const std::string package = "<package ><configurations><configuration/></configurations>"
                                "<content><configuration/></content></package>";
    EXPECT_EQ(updateBuffer(Updater, package).bytes, package);
}

TEST(OBLFormatUpdater3962n2, RenamesInnerElementsInsideEachOther)
{
    EXPECT_EQ(rewritten(Updater, "<package><configuration><configurations><configurations>"
                                 "<configurations/></configurations><x><configurations/></x>"
                                 "</configurations></configuration></package>"),
              "<package><configurations><configuration><configuration>"
              "<configuration/></configuration><x><configuration/></x>"
              "</configuration></configurations></package>");
}

TEST(OBLFormatUpdater3962n2, RenamesTheItemsOfInnerElements)
{
    EXPECT_EQ(rewritten(Updater, "<package><configuration><configurations>"
                                 "<configuration><configurations><configuration/></configurations>"
                                 "</configuration><configuration/></configurations>"
                                 "<x><configuration/></x></configuration></package>"),
              "<package><configurations><configuration>"
              "<configurations><configuration><configurations/></configuration>"
              "</configurations><configurations/></configuration>"
              "<x><configuration/></x></configurations></package>");
}

TEST(OBLFormatUpdater3962n2, CountsTheItemsOfInnerElements)
{
    EXPECT_EQ(updateBuffer(Updater, "<package><configuration><configurations><configuration/>"
                                    "<configuration/></configurations></configuration></package>")
                  .log,
              "ENTRY_CHANGED_4\n");
}

TEST(OBLFormatUpdater3962n2, CountsOuterAndInnerElements)
{
    EXPECT_EQ(updateBuffer(Updater, "<package><configuration><configurations><configurations/>"
                                    "</configurations></configuration><configuration/></package>")
                  .log,
              "ENTRY_CHANGED_4\n");
}

TEST(OBLFormatUpdater3962n2, KeepsTextsAndOrder)
{
    EXPECT_EQ(rewritten(Updater, R"(<package><configuration k="1"><name v="a"/><configurations/>)"
                                 R"(<uid v="2"/></configuration></package>)"),
              R"(<package><configurations k="1"><name v="a"/><configuration/>)"
              R"(<uid v="2"/></configurations></package>)");
}
