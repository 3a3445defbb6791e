#include "behavior/syncfunctiontype.h"

#include "behaviorfixture.h"
#include "support/functiontext.h"

namespace {

using namespace TestSupport;

class SyncFunctionType : public BehaviorTest
{
protected:
    const Function& openFunction(unsigned type, const std::string& value)
    {
        return contentAt<Function>(openWith(aFunction("f", type, value)), 0);
    }
    bool editFunction(const Function& function,
                      const std::function<void(const ManipulatorStruct<Function>&)>& apply)
    {
        return edit([&](ManipulatorContext& context) {
            apply(ManipulatorStruct<Function>(function, context));
        });
    }
    static ManipulatorStruct<DynamicValue> bodyOf(const ManipulatorStruct<Function>& function)
    {
        return function.paramValue().child<DynamicValue>();
    }
    static unsigned typeOf(const Function& function) { return function.type().value().get(); }

    const std::string twoNodes = aDynamicValue(1, aFunctionNode(1, "const_float1", 256) +
                                                      aFunctionNode(2, "const_float2", 512));
};

TEST_F(SyncFunctionType, FollowsTheTypeOfTheRootNode)
{
    const Function& function = openFunction(256, twoNodes);

    editFunction(function, [](const auto& manipulator) {
        bodyOf(manipulator).paramNodes().at(0).type().value().set(16);
    });

    EXPECT_EQ(typeOf(function), 16u);
}

TEST_F(SyncFunctionType, FollowsTheChoiceOfTheRootNode)
{
    const Function& function = openFunction(256, twoNodes);

    editFunction(function,
                 [](const auto& manipulator) { bodyOf(manipulator).rootnode().value().set(2); });

    EXPECT_EQ(typeOf(function), 512u);
}

TEST_F(SyncFunctionType, FollowsABodyThatIsReplaced)
{
    const Function& function = openFunction(256, aConstant("Float1", "1"));

    editFunction(function, [](const auto& manipulator) {
        auto body = std::make_unique<DynamicValue>();
        auto node = std::make_unique<ParamNode>();
        node->uid().assign(5);
        node->type().value().assign(2048);
        body->paramNodes().pushBack(std::move(node));
        body->rootnode().value().assign(5);
        manipulator.paramValue().set(std::move(body));
    });

    EXPECT_EQ(typeOf(function), 2048u);
}

TEST_F(SyncFunctionType, IsBroughtBackWhenItIsSetToAnother)
{
    const Function& function = openFunction(256, twoNodes);

    editFunction(function, [](const auto& manipulator) { manipulator.type().value().set(4); });

    EXPECT_EQ(typeOf(function), 256u);
}

TEST_F(SyncFunctionType, IsFreeWithoutARootNode)
{
    const Function& function = openFunction(256, aDynamicValue(99, aFunctionNode(1, "x", 512)));

    editFunction(function, [](const auto& manipulator) { manipulator.type().value().set(4); });

    EXPECT_EQ(typeOf(function), 4u);
}

TEST_F(SyncFunctionType, IsFreeForAConstant)
{
    const Function& function = openFunction(256, aConstant("Float1", "1"));

    editFunction(function, [](const auto& manipulator) { manipulator.type().value().set(4); });

    EXPECT_EQ(typeOf(function), 4u);
}

TEST_F(SyncFunctionType, IsNotRepairedByOpeningNorByOtherEdits)
{
    const Function& function = openFunction(4, twoNodes);

    editFunction(function, [](const auto& manipulator) { manipulator.identifier().set("other"); });

    EXPECT_EQ(typeOf(function), 4u);
    EXPECT_EQ(log, Lines());
}

TEST_F(SyncFunctionType, IsSetInAFunctionThatIsAddedByAnEdit)
{
    const Package& package = openWith("");

    edit([&](ManipulatorContext& context) {
        auto function = std::make_unique<Function>();
        auto body = std::make_unique<DynamicValue>();
        auto node = std::make_unique<ParamNode>();
        node->uid().assign(5);
        node->type().value().assign(2048);
        body->paramNodes().pushBack(std::move(node));
        body->rootnode().value().assign(5);
        function->paramValue().set(std::move(body));
        ManipulatorStruct<Package>(package, context).content().pushBack(std::move(function));
    });

    EXPECT_EQ(typeOf(contentAt<Function>(package, 0)), 2048u);
}

TEST_F(SyncFunctionType, ADifferenceThatAnUndoBringsBackIsReportedAndStays)
{
    const Function& function = openFunction(4, twoNodes);
    editFunction(function, [](const auto& manipulator) {
        bodyOf(manipulator).paramNodes().at(0).function().set("const_float1x");
    });
    ASSERT_EQ(typeOf(function), 256u);

    undo();

    EXPECT_EQ(typeOf(function), 4u);
    const std::string different = "core\\behavior\\corebehaviorsyncfunctiontype:100: Function "
                                  "type: 4 not synchronised with root node: 256 in function f";
    EXPECT_EQ(log, Lines{different});
}

} // namespace
