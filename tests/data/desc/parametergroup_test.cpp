#include "data/desc/parametergroup.h"

#include "data/desc/valuetype.h"
#include <gtest/gtest.h>

using namespace Ksx::Data::Desc;

namespace {

Parameter parameterOf(const std::string& identifier, unsigned type)
{
    Parameter parameter;
    parameter.identifier = identifier;
    parameter.type = type;
    return parameter;
}

// More than a vector takes without moving its elements.
void addMany(ParameterGroup& group)
{
    for (int i = 0; i < 1000; ++i)
        group.add(parameterOf(std::to_string(i), ValueType::Bool));
}

} // namespace

TEST(ParameterGroup, IsAskedForByTheNameOfItsRole)
{
    EXPECT_EQ(ParameterGroup(GroupRole::Common, "a", "", "").name(), "__common__");
    EXPECT_EQ(ParameterGroup(GroupRole::Main, "a", "", "").name(), "__main__");
    EXPECT_EQ(ParameterGroup(GroupRole::Named, "a", "", "").name(), "a");
}

TEST(ParameterGroup, KeepsTheOrderOfAdding)
{
    ParameterGroup group(GroupRole::Main, "g", "", "");
    group.add(parameterOf("z", ValueType::Bool));
    group.add(parameterOf("a", ValueType::Bool));
    EXPECT_EQ(group.parameters()[0]->identifier, "z");
    EXPECT_EQ(group.parameters()[1]->identifier, "a");
}

TEST(ParameterGroup, FindsTheFirstOfAnIdentifierAndKeepsTheSecond)
{
    ParameterGroup group(GroupRole::Main, "g", "", "");
    const Parameter& first = group.add(parameterOf("a", ValueType::Bool));
    group.add(parameterOf("a", ValueType::Int1));
    EXPECT_EQ(group.find("a"), &first);
    EXPECT_EQ(group.parameters().size(), 2u);
}

TEST(ParameterGroup, FindsNothingOfAnotherIdentifier)
{
    ParameterGroup group(GroupRole::Main, "g", "", "");
    group.add(parameterOf("a", ValueType::Bool));
    EXPECT_EQ(group.find("A"), nullptr);
}

TEST(ParameterGroup, LeavesParametersWhereTheyAreWhenOthersAreAdded)
{
    ParameterGroup group(GroupRole::Main, "g", "", "");
    const Parameter& first = group.add(parameterOf("a", ValueType::Bool));
    addMany(group);
    EXPECT_EQ(group.find("a"), &first);
    EXPECT_EQ(first.identifier, "a");
}
