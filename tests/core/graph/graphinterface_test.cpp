#include "ksx/core/graphinterface.h"

#include "core/commanddatamodification.h"
#include "data/content/graphmanipulators.h"
#include "data/content/paramsgraph.h"
#include "data/content/paramsgraphdata.h"
#include "support/shelfcases.h"
#include "support/workspace.h"

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Ksx::Data::Content::Graph;
using Ksx::Data::Content::PackagesList;
using Ksx::Data::Content::ParamInput;
using Ksx::Data::Content::ParamsGraphData;
using Orv::Core::ManipulatorContext;
using Orv::Core::ManipulatorList;
using Orv::Core::ManipulatorStruct;

// Identifiers of a list of inputs.

struct NameCase
{
    const char* name;
    std::vector<std::string> taken;
    const char* wanted;
    const char* expected;
};

class FreeIdentifier : public testing::TestWithParam<NameCase>
{};

TEST_P(FreeIdentifier, IsTheWantedOneOrTheNextFreeOne)
{
    GraphText graph;
    for (const std::string& identifier : GetParam().taken)
        graph.inputs += anInput(identifier, 1, 256);
    const auto package = packageFrom(aPackage().containing(graph.text()));

    EXPECT_EQ(freeIdentifier(GetParam().wanted, "fallback",
                             ParamInputNameExist(graphIn(*package)->paraminputs())),
              GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, FreeIdentifier,
    testing::Values(
        NameCase{"Free", {}, "a", "a"}, NameCase{"FreeWithANumber", {}, "a_7", "a_7"},
        NameCase{"Taken", {"a"}, "a", "a_1"}, NameCase{"TakenTwice", {"a", "a_1"}, "a", "a_2"},
        NameCase{"TakenWithANumber", {"a_7"}, "a_7", "a_8"},
        NameCase{"Blank", {"a_b"}, "a b", "a_b_1"}, NameCase{"Empty", {}, "", "fallback"},
        NameCase{"NothingLegal", {}, "???", "fallback"},
        NameCase{"EmptyAndTaken", {"fallback"}, "", "fallback_1"},
        NameCase{"DigitsWithoutSeparator", {"a7"}, "a7", "a7_1"},
        NameCase{"NumberAlone", {"7"}, "7", "7_1"},
        NameCase{"NineDigits", {"a_999999999"}, "a_999999999", "a_1000000000"},
        NameCase{"TenDigits", {"a_1234567890"}, "a_1234567890", "a_1234567891"},
        NameCase{"GreatestNumber", {"a_4294967295"}, "a_4294967295", "a_4294967295_1"},
        NameCase{"NumberTooGreat", {"a_4294967296"}, "a_4294967296", "a_4294967296_1"},
        NameCase{"NumberFarTooGreat",
                 {"a_99999999999999999999", "a_99999999999999999999_1"},
                 "a_99999999999999999999",
                 "a_99999999999999999999_2"},
        NameCase{"LongNumberAlone",
                 {"99999999999999999999"},
                 "99999999999999999999",
                 "99999999999999999999_1"},
        NameCase{"LongDigitsWithoutSeparator", {"a99999999999"}, "a99999999999", "a99999999999_1"}),
    caseName<NameCase>);

TEST(InterfaceNames, OfTheIgnoredItemAreFree)
{
    GraphText text;
    text.inputs = anInput("a", 1, 256) + anInput("b", 2, 256);
    text.outputs = anOutput("a", 1) + anOutput("b", 2);
    const auto package = packageFrom(aPackage().containing(text.text()));
    const auto& inputs = graphIn(*package)->paraminputs();
    const auto& outputs = graphIn(*package)->graphOutputs();

    EXPECT_FALSE(ParamInputNameExist(inputs, &inputs.at(0))("a"));
    EXPECT_TRUE(ParamInputNameExist(inputs, &inputs.at(0))("b"));
    EXPECT_FALSE(GraphOutputNameExist(outputs, &outputs.at(1))("b"));
    EXPECT_TRUE(GraphOutputNameExist(outputs, &outputs.at(1))("a"));
}

TEST(InterfaceNames, OfASecondItemWithTheNameAreTaken)
{
    GraphText text;
    text.inputs = anInput("a", 1, 256) + anInput("a", 2, 256);
    const auto package = packageFrom(aPackage().containing(text.text()));
    const auto& inputs = graphIn(*package)->paraminputs();

    EXPECT_TRUE(ParamInputNameExist(inputs, &inputs.at(0))("a"));
}

TEST(InterfaceNames, AreThoseOfTheirOwnList)
{
    GraphText text;
    text.inputs = anInput("a", 1, 256);
    text.outputs = anOutput("b", 2);
    const auto package = packageFrom(aPackage().containing(text.text()));

    EXPECT_FALSE(ParamInputNameExist(graphIn(*package)->paraminputs())("b"));
    EXPECT_FALSE(GraphOutputNameExist(graphIn(*package)->graphOutputs())("a"));
}

TEST(InterfaceNames, OfParameterSetsAreKnown)
{
    Ksx::Data::Content::ParamsGraph graph;
    auto& list = graph.paramsGraphDatas();
    auto data = std::make_unique<ParamsGraphData>();
    data->identifier().assign("a");
    const ParamsGraphData* const item = data.get();
    list.pushBack(std::move(data));

    EXPECT_TRUE(ParamsGraphDataNameExist(list)("a"));
    EXPECT_FALSE(ParamsGraphDataNameExist(list, item)("a"));
    EXPECT_FALSE(ParamsGraphDataNameExist(list)(""));
}

TEST(InterfaceNames, AreStillKnownToCopiesOfTheQuestion)
{
    GraphText text;
    text.inputs = anInput("a", 1, 256);
    const auto package = packageFrom(aPackage().containing(text.text()));
    auto question = std::make_unique<ParamInputNameExist>(graphIn(*package)->paraminputs());
    const IdentifierTaken copy = *question;
    question.reset();

    EXPECT_TRUE(copy("a"));
}

TEST(InterfaceNames, HaveDefaults)
{
    EXPECT_EQ(defaultInputIdentifier(), "DEFAULT_INPUT_IDENTIFIER");
    EXPECT_EQ(defaultOutputIdentifier(), "DEFAULT_OUTPUT_IDENTIFIER");
}

// Parts of edits.

constexpr Uid FirstCount = 50;

class GraphInterface : public testing::Test
{
protected:
    GraphInterface()
    {
        UidSource::setClock([] { return std::time_t{1000}; });
        UidSource::shared().setCounter(FirstCount);
        GraphText text;
        text.inputs = anInput("a", 1050, 256) + anInput("b", 2, 1);
        text.outputs = anOutput("a", 1050) + anOutput("b", 2);
        text.rootOutputs = aRootOutput(1050) + aRootOutput(2);
        document.content().pushBack(packageFrom(aPackage().containing(text.text())));
        before = xmlOf(graph());
    }
    ~GraphInterface() override { UidSource::setClock({}); }
    const Graph& graph() const
    {
        return static_cast<const Graph&>(document.content().at(0).content().at(0));
    }
    Uid addInput(const InterfaceEntry& entry)
    {
        return run([&](ManipulatorContext& context) {
            return applyAddInput(ManipulatorList<ParamInput>(graph().paraminputs(), context),
                                 entry);
        });
    }
    Uid addOutput(const InterfaceEntry& entry)
    {
        return run([&](ManipulatorContext& context) {
            return applyAddOutput(ManipulatorStruct<Graph>(graph(), context), entry);
        });
    }
    bool canBeUndone()
    {
        const std::string after = xmlOf(graph());
        const bool isUndone = command->undo() && xmlOf(graph()) == before;
        return isUndone && command->redo() && xmlOf(graph()) == after;
    }
    template <class List>
    static std::string names(const List& list)
    {
        std::string names;
        for (const auto& item : list)
            names += (names.empty() ? "" : " ") + item.identifier().get();
        return names;
    }

    PackagesList document;
    std::string before;
    std::shared_ptr<Orv::Core::CommandDataModification> command;

private:
    template <class Function>
    Uid run(const Function& function)
    {
        Uid uid = NoUid;
        command = std::make_shared<Orv::Core::CommandDataModification>(
            [&](ManipulatorContext& context) {
                uid = function(context);
                return true;
            },
            "edit");
        command->execute();
        return uid;
    }
};

TEST_F(GraphInterface, AnInputHasANewUidInItsList)
{
    // 1050 is taken, and 1051 is the next draw.
    const Uid uid = addInput({"x", 256});

    EXPECT_EQ(uid, 1050u + (1051u & 0xFFu));
    EXPECT_EQ(graph().paraminputs().at(2).uid().get(), uid);
    EXPECT_TRUE(canBeUndone());
}

TEST_F(GraphInterface, AnInputHasWhatItIsToldAndNoMore)
{
    addInput({"x", 512, AtEnd, {{"mask", "R"}, {"other", ""}}});

    const ParamInput& input = graph().paraminputs().at(2);
    EXPECT_EQ(input.identifier().get(), "x");
    EXPECT_EQ(input.type().value().get(), 512u);
    ASSERT_EQ(input.usages().size(), 2u);
    EXPECT_EQ(input.usages().at(0).name().get(), "mask");
    EXPECT_EQ(input.usages().at(0).components().get(), "R");
    EXPECT_TRUE(input.defaultValue().isEmpty());
}

TEST_F(GraphInterface, AnInputWithATakenIdentifierGetsANumber)
{
    addInput({"a", 256});

    EXPECT_EQ(names(graph().paraminputs()), "a b a_1");
}

TEST_F(GraphInterface, AnOutputHasARootOutputOfItsUid)
{
    const Uid uid = addOutput({"x", 1, AtEnd, {{"diffuse", "RGBA"}}});

    const auto& output = graph().graphOutputs().at(2);
    EXPECT_EQ(output.uid().get(), uid);
    EXPECT_EQ(uid, 1050u + (1051u & 0xFFu));
    EXPECT_EQ(output.usages().at(0).name().get(), "diffuse");
    const auto& rootOutput = graph().root().rootOutputs().at(2);
    EXPECT_EQ(rootOutput.output().get(), uid);
    EXPECT_EQ(rootOutput.format().value().get(), 0u);
    EXPECT_EQ(rootOutput.mipmaps().value().get(), 0u);
    EXPECT_TRUE(canBeUndone());
}

TEST_F(GraphInterface, AnOutputWithATakenIdentifierGetsANumber)
{
    addOutput({"b", 1});

    EXPECT_EQ(names(graph().graphOutputs()), "a b b_1");
}

TEST_F(GraphInterface, ARootOutputStandsBehindAllOthersWhereverItsOutputDoes)
{
    const Uid uid = addOutput({"x", 1, 0});

    EXPECT_EQ(names(graph().graphOutputs()), "x a b");
    EXPECT_EQ(graph().root().rootOutputs().at(2).output().get(), uid);
}

struct PlaceCase
{
    const char* name;
    std::size_t index;
    const char* expected;
};

class PlaceInInterface : public GraphInterface, public testing::WithParamInterface<PlaceCase>
{};

TEST_P(PlaceInInterface, OfAnInput)
{
    addInput({"x", 256, GetParam().index});

    EXPECT_EQ(names(graph().paraminputs()), GetParam().expected);
    EXPECT_TRUE(canBeUndone());
}

TEST_P(PlaceInInterface, OfAnOutput)
{
    addOutput({"x", 1, GetParam().index});

    EXPECT_EQ(names(graph().graphOutputs()), GetParam().expected);
    EXPECT_TRUE(canBeUndone());
}

INSTANTIATE_TEST_SUITE_P(Indexes, PlaceInInterface,
                         testing::Values(PlaceCase{"First", 0, "x a b"},
                                         PlaceCase{"Middle", 1, "a x b"},
                                         PlaceCase{"Last", 2, "a b x"},
                                         PlaceCase{"End", AtEnd, "a b x"},
                                         PlaceCase{"BeyondTheEnd", 99, "a b x"}),
                         caseName<PlaceCase>);

TEST_F(GraphInterface, AnEmptyIdentifierGivesTheDefaultAndThenANumber)
{
    addInput({"", 256});
    addInput({"", 256});
    addOutput({});
    addOutput({});

    EXPECT_EQ(names(graph().paraminputs()),
              "a b DEFAULT_INPUT_IDENTIFIER DEFAULT_INPUT_IDENTIFIER_1");
    EXPECT_EQ(names(graph().graphOutputs()),
              "a b DEFAULT_OUTPUT_IDENTIFIER DEFAULT_OUTPUT_IDENTIFIER_1");
}

} // namespace
