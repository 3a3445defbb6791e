#include "behavior/syncfunctioninstance.h"

#include "behaviorfixture.h"
#include "support/functiontext.h"

namespace {

using namespace TestSupport;

const std::string PathOfF = "pkg://f?dependency=100";

// Function "f" of the inputs "a" and "b" and the type 256; and function "g", whose node 5 is an
// instance of "f" with both inputs connected.
class SyncFunctionInstance : public BehaviorTest
{
protected:
    static std::string functionF()
    {
        return aFunction("f", 256, aDynamicValue(1, aFunctionNode(1, "add", 256)),
                         anInput("a", 11, 256) + anInput("b", 12, 256));
    }
    static std::string instanceNode(const std::string& path = PathOfF, unsigned type = 256)
    {
        return aFunctionNode(5, "instance", type, aLink("a", 6) + aLink("b", 6),
                             aDataItem(aConstant("String", path)));
    }
    static std::string functionG(const std::string& path = PathOfF, unsigned type = 256)
    {
        return aFunction(
            "g", 256,
            aDynamicValue(6, instanceNode(path, type) + aFunctionNode(6, "const_float1", 256)));
    }
    void openBoth(const std::string& path = PathOfF)
    {
        package = &openWith(functionF() + functionG(path));
        f = &contentAt<Function>(*package, 0);
        g = &contentAt<Function>(*package, 1);
    }
    bool editF(const std::function<void(const ManipulatorStruct<Function>&)>& apply)
    {
        return edit(
            [&](ManipulatorContext& context) { apply(ManipulatorStruct<Function>(*f, context)); });
    }
    // Lets the instance in "g" name another function.
    void setPath(const std::string& path)
    {
        edit([&](ManipulatorContext& context) {
            ManipulatorStruct<ParamNode>(nodeOf(*g), context)
                .funcDatas()
                .at(0)
                .constantValue()
                .child<ConstantValueString>()
                .value()
                .set(path);
        });
    }
    static const ParamNode& nodeOf(const Function& function, std::size_t index = 0)
    {
        return dynamic_cast<const DynamicValue&>(*function.paramValue().get())
            .paramNodes()
            .at(index);
    }
    static Lines linksOf(const ParamNode& node)
    {
        Lines links;
        for (const Connexion& connexion : node.connexions())
            links.push_back(connexion.identifier().get());
        return links;
    }
    static unsigned typeOf(const ParamNode& node) { return node.type().value().get(); }
    static void setRootType(const ManipulatorStruct<Function>& function, unsigned type)
    {
        function.paramValue().child<DynamicValue>().paramNodes().at(0).type().value().set(type);
    }

    const Package* package = nullptr;
    const Function* f = nullptr;
    const Function* g = nullptr;
};

TEST_F(SyncFunctionInstance, FollowsAnInputThatIsRenamed)
{
    openBoth();

    editF([](const auto& function) { function.paraminputs().at(0).identifier().set("c"); });

    EXPECT_EQ(linksOf(nodeOf(*g)), Lines({"c", "b"}));
}

TEST_F(SyncFunctionInstance, FollowsInputsThatAreEditedOneAfterTheOther)
{
    openBoth();

    editF([](const auto& function) { function.paraminputs().at(0).identifier().set("c"); });
    editF([](const auto& function) { function.paraminputs().at(0).identifier().set("d"); });
    editF([](const auto& function) { function.paraminputs().erase(1, 1); });

    EXPECT_EQ(linksOf(nodeOf(*g)), Lines({"d"}));
}

TEST_F(SyncFunctionInstance, LosesTheConnectionOfAnInputThatIsRemoved)
{
    openBoth();

    editF([](const auto& function) { function.paraminputs().erase(0, 1); });

    EXPECT_EQ(linksOf(nodeOf(*g)), Lines({"b"}));
}

TEST_F(SyncFunctionInstance, LosesConnectionsToInputsThatTheFunctionLacksWithAnotherPath)
{
    openBoth("pkg://gone?dependency=100");
    editF([](const auto& function) { function.paraminputs().at(1).identifier().set("other"); });
    EXPECT_EQ(linksOf(nodeOf(*g)), Lines({"a", "b"}));

    edit([&](ManipulatorContext& context) {
        ManipulatorStruct<ParamNode>(nodeOf(*g), context)
            .funcDatas()
            .at(0)
            .constantValue()
            .child<ConstantValueString>()
            .value()
            .set(PathOfF);
    });

    EXPECT_EQ(linksOf(nodeOf(*g)), Lines({"a"}));
}

TEST_F(SyncFunctionInstance, LosesConnectionsToInputsThatTheFunctionLacksWithAnyEditOfItsInterface)
{
    openBoth();
    edit([&](ManipulatorContext& context) {
        auto connexion = std::make_unique<Connexion>();
        connexion->identifier().assign("nothing");
        ManipulatorStruct<ParamNode>(nodeOf(*g), context)
            .connexions()
            .pushBack(std::move(connexion));
    });
    EXPECT_EQ(linksOf(nodeOf(*g)), Lines({"a", "b", "nothing"}));

    editF([](const auto& function) { setRootType(function, 512); });

    EXPECT_EQ(linksOf(nodeOf(*g)), Lines({"a", "b"}));
}

TEST_F(SyncFunctionInstance, KeepsConnectionsWhileItsFunctionCannotBeFound)
{
    openBoth("pkg://gone?dependency=100");

    editF([](const auto& function) { function.paraminputs().erase(0, 1); });

    EXPECT_EQ(linksOf(nodeOf(*g)), Lines({"a", "b"}));
}

TEST_F(SyncFunctionInstance, FollowsTheTypeOfTheFunction)
{
    openBoth();

    editF([](const auto& function) { setRootType(function, 512); });

    EXPECT_EQ(f->type().value().get(), 512u);
    EXPECT_EQ(typeOf(nodeOf(*g)), 512u);
}

TEST_F(SyncFunctionInstance, ThatIsTheRootOfAFunctionPassesItsTypeOn)
{
    package =
        &openWith(functionF() + aFunction("g", 256, aDynamicValue(5, instanceNode())) +
                  aFunction("h", 256, aDynamicValue(5, instanceNode("pkg://g?dependency=100"))));
    f = &contentAt<Function>(*package, 0);

    editF([](const auto& function) { setRootType(function, 1024); });

    EXPECT_EQ(contentAt<Function>(*package, 1).type().value().get(), 1024u);
    EXPECT_EQ(contentAt<Function>(*package, 2).type().value().get(), 1024u);
}

TEST_F(SyncFunctionInstance, FollowsInTheValuesOfNodesAndGraphsToo)
{
    const std::string value = aParameter("p", "", aDynamicValue(5, instanceNode()));
    const GraphText graph{"graph", 2, {}, {}, aNode(60, aFilter("blur", value)), value};
    package = &openWith(functionF() + graph.text());
    f = &contentAt<Function>(*package, 0);

    editF([](const auto& function) { function.paraminputs().at(0).identifier().set("c"); });

    const std::string text = xmlOf(contentAt<Graph>(*package, 1));
    EXPECT_EQ(text.find("<identifier v=\"a\"/>"), std::string::npos);
    EXPECT_NE(text.find("<identifier v=\"c\"/>"), text.rfind("<identifier v=\"c\"/>"));
}

TEST_F(SyncFunctionInstance, IsNotRepairedByOpeningNorByOtherEdits)
{
    package = &openWith(functionF() + functionG(PathOfF, 4));
    f = &contentAt<Function>(*package, 0);

    editF([](const auto& function) {
        function.paraminputs().at(0).identifier().set("c");
        function.attributes().label().set("label");
    });

    EXPECT_EQ(typeOf(nodeOf(contentAt<Function>(*package, 1))), 4u);
}

TEST_F(SyncFunctionInstance, IsLeftAloneWhenItsFunctionIsRemoved)
{
    openBoth();
    const std::string before = xmlOf(*g);

    edit([&](ManipulatorContext& context) {
        ManipulatorStruct<Package>(*package, context).content().erase(0, 1);
    });

    EXPECT_EQ(xmlOf(*g), before);
}

TEST_F(SyncFunctionInstance, ThatIsAddedByAnEditTakesOverTheType)
{
    openBoth();

    edit([&](ManipulatorContext& context) {
        auto node = std::make_unique<ParamNode>();
        node->uid().assign(7);
        node->function().assign("instance");
        auto text = std::make_unique<ConstantValueString>();
        text->value().assign(PathOfF);
        auto data = std::make_unique<FuncData>();
        data->name().assign("datacontent");
        data->constantValue().set(std::move(text));
        node->funcDatas().pushBack(std::move(data));
        ManipulatorStruct<Function>(*g, context)
            .paramValue()
            .child<DynamicValue>()
            .paramNodes()
            .pushBack(std::move(node));
    });

    EXPECT_EQ(typeOf(nodeOf(*g, 2)), 256u);
}

TEST_F(SyncFunctionInstance, WithAnotherTextTakesOverTheTypeOfTheOtherFunction)
{
    package = &openWith(functionF() + functionG("pkg://nowhere?dependency=100", 4));
    f = &contentAt<Function>(*package, 0);
    g = &contentAt<Function>(*package, 1);
    setPath(PathOfF);
    ASSERT_EQ(typeOf(nodeOf(*g)), 256u);

    editF([](const auto& function) { function.paraminputs().at(0).identifier().set("c"); });

    EXPECT_EQ(linksOf(nodeOf(*g)), Lines({"c", "b"}));
}

TEST_F(SyncFunctionInstance, ThatComesBackToAFunctionTakesOverItsTypeAgain)
{
    openBoth();
    setPath("pkg://nowhere?dependency=100");
    editF([](const auto& function) { setRootType(function, 512); });
    ASSERT_EQ(typeOf(nodeOf(*g)), 256u);

    setPath(PathOfF);

    EXPECT_EQ(typeOf(nodeOf(*g)), 512u);
}

TEST_F(SyncFunctionInstance, OfItselfComesToRest)
{
    package =
        &openWith(aFunction("f", 256, aDynamicValue(5, instanceNode()), anInput("a", 11, 256)));
    f = &contentAt<Function>(*package, 0);

    editF([](const auto& function) {
        setRootType(function, 512);
        function.paraminputs().at(0).identifier().set("c");
    });

    EXPECT_EQ(f->type().value().get(), 512u);
    EXPECT_EQ(linksOf(nodeOf(*f)), Lines({"c"}));
}

// Two functions whose results are those of each other: an edit that gives them different types
// would go around for ever.
TEST_F(SyncFunctionInstance, TypesThatChaseEachOtherAreLeftAtLast)
{
    package =
        &openWith(aFunction("f", 256, aDynamicValue(5, instanceNode("pkg://g?dependency=100"))) +
                  aFunction("g", 256, aDynamicValue(5, instanceNode())));
    f = &contentAt<Function>(*package, 0);
    g = &contentAt<Function>(*package, 1);

    EXPECT_TRUE(edit([&](ManipulatorContext& context) {
        setRootType(ManipulatorStruct<Function>(*f, context), 512);
        setRootType(ManipulatorStruct<Function>(*g, context), 1024);
    }));
}

} // namespace
