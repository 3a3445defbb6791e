#include "updating/packageupdater4253.h"

#include "data/content/graph.h"
#include "data/content/package.h"
#include "support/packagetext.h"
#include "support/shelfcases.h"
#include "support/updaterhelper.h"
#include <gtest/gtest.h>

namespace {

using namespace TestSupport;
using Ksx::Data::Content::Graph;

const Ksx::Core::PackageUpdater4253 Updater;

// Types of inputs.
constexpr unsigned Colour = 1;
constexpr unsigned Grey = 2;
constexpr unsigned Number = 256;

std::string value(const std::string& element, unsigned number)
{
    return "<" + element + "><value v=\"" + std::to_string(number) + "\"/></" + element + ">";
}

std::string anInput(unsigned uid, unsigned type)
{
    return "<paraminput><identifier v=\"in\"/><uid v=\"" + std::to_string(uid) + "\"/>" +
           value("type", type) +
           "<defaultWidget><name v=\"\"/><options/></defaultWidget></paraminput>";
}

std::string aGraph(const std::string& identifier, unsigned primaryInput, const std::string& inputs,
                   const std::string& content = {})
{
    return "<graph><identifier v=\"" + identifier + "\"/><uid v=\"1\"/><paraminputs>" + inputs +
           "</paraminputs>" + value("primaryInput", primaryInput) +
           "<graphOutputs/><compNodes/><baseParameters/><content>" + content +
           "</content><root/></graph>";
}

unsigned primaryInputOf(const Ksx::Data::Content::Package& package)
{
    return static_cast<const Graph&>(package.content().at(0)).primaryInput().value().get();
}

struct PrimaryInputCase
{
    const char* name;
    unsigned before;
    std::string inputs;
    unsigned after;
};

class PackageUpdater4253PrimaryInput : public testing::TestWithParam<PrimaryInputCase>
{};

} // namespace

TEST(PackageUpdater4253, ReportsOldAndNewInputAndTheGraph)
{
    const auto package = packageFrom(aPackage().containing(
        aGroup("Wood", aGraph("oak", 7, anInput(7, Number) + anInput(9, Grey)))));
    EXPECT_EQ(updatePackage(Updater, *package),
              "COUNT_0_CHANGE_PRIMARYINPUT_FROM_7_TO_9_IN_pkg://Wood/oak\n");
}

TEST(PackageUpdater4253, CountsFromNoughtInDocumentOrder)
{
    const auto package =
        packageFrom(aPackage().containing(aGraph("a", 5, "", aGraph("b", 0, anInput(3, Colour))) +
                                          aGraph("c", 4, anInput(4, Grey)) + aGraph("d", 6, "")));
    EXPECT_EQ(updatePackage(Updater, *package),
              "COUNT_0_CHANGE_PRIMARYINPUT_FROM_5_TO_0_IN_pkg://a\n"
              "COUNT_1_CHANGE_PRIMARYINPUT_FROM_0_TO_3_IN_pkg://a/b\n"
              "COUNT_2_CHANGE_PRIMARYINPUT_FROM_6_TO_0_IN_pkg://d\n");
}

TEST(PackageUpdater4253, ChangesNothingTheSecondTime)
{
    const auto package =
        packageFrom(aPackage().containing(aGraph("a", 5, "") + aGraph("b", 0, anInput(3, Colour))));
    updatePackage(Updater, *package);
    const std::string before = textOf(*package);
    EXPECT_EQ(updatePackage(Updater, *package), "");
    EXPECT_EQ(textOf(*package), before);
}

TEST(PackageUpdater4253, LooksAtNothingButGraphs)
{
    const auto package = packageFrom(aPackage().containing(
        "<function><identifier v=\"f\"/><uid v=\"1\"/><paraminputs>" + anInput(3, Colour) +
        "</paraminputs>" + value("type", Number) + "<paramValue/></function>"));
    EXPECT_EQ(updatePackage(Updater, *package), "");
}

TEST(PackageUpdater4253, ChangesWithoutALogToo)
{
    const auto package = packageFrom(aPackage().containing(aGraph("a", 5, "")));
    EXPECT_TRUE(Updater.update(*package, nullptr, {}));
    EXPECT_EQ(primaryInputOf(*package), 0U);
}

TEST(PackageUpdater4253, LeavesTheFormatVersionBeforeItsOwn)
{
    EXPECT_EQ(Updater.updaterVersion().toString(), "1.0.1.4253");
    EXPECT_EQ(Updater.formatVersion().toString(), "1.0.1.3962");
}

TEST(PackageUpdater4253, IsNamedByKeysInTheContextOfItsClass)
{
    const EchoTranslator translator;
    EXPECT_EQ(Updater.name(), "Ksx::Core::PackageUpdater4253|NAME");
}

TEST_P(PackageUpdater4253PrimaryInput, IsAnImageInputWhereThereIsOne)
{
    const auto package =
        packageFrom(aPackage().containing(aGraph("a", GetParam().before, GetParam().inputs)));
    updatePackage(Updater, *package);
    EXPECT_EQ(primaryInputOf(*package), GetParam().after);
}

INSTANTIATE_TEST_SUITE_P(
    Graphs, PackageUpdater4253PrimaryInput,
    testing::Values(
        PrimaryInputCase{"NoInputs", 5, "", 0}, PrimaryInputCase{"NoInputsAndNone", 0, "", 0},
        PrimaryInputCase{"InOrder", 9, anInput(7, Grey) + anInput(9, Colour), 9},
        PrimaryInputCase{"NoneYet", 0, anInput(6, Number) + anInput(7, Grey) + anInput(9, Grey), 7},
        PrimaryInputCase{"NamesANumber", 6, anInput(6, Number) + anInput(9, Colour), 9},
        PrimaryInputCase{"NamesNothing", 5, anInput(6, Number) + anInput(9, Colour), 9},
        PrimaryInputCase{"BothLowBits", 0, anInput(9, Colour | Grey), 9},
        PrimaryInputCase{"HigherBitsBeside", 0, anInput(9, Number | Grey), 9},
        PrimaryInputCase{"NoImageAndANumber", 6, anInput(6, Number), 6},
        PrimaryInputCase{"NoImageAndNothing", 5, anInput(6, Number), 5},
        PrimaryInputCase{"SecondOfTheUidIsAnImage", 6,
                         anInput(6, Number) + anInput(7, Grey) + anInput(6, Colour), 6}),
    caseName<PrimaryInputCase>);
