#include "data/content/valueoverloadable.h"

#include "data/content/constantvalues.h"
#include "data/content/rootoutput.h"
#include "data/content/valueclasses.h"
#include "data/content/valueoverloadablemanipulator.h"
#include "data/content/xmltext.h"
#include "support/editing.h"
#include <gtest/gtest.h>

using namespace Ksx::Data::Content;
using Orv::Core::ManipulatorContext;
using Orv::Core::ManipulatorStruct;
using TestSupport::makeCommand;
using TestSupport::MemberMissing;
using TestSupport::read;
using TestSupport::readNew;
using TestSupport::rewritten;
using TestSupport::written;

namespace {

constexpr const char* WithOverloads = R"(<disabled><value v="1"/><valueOverloads>)"
                                      R"(<valueOverload><value v="0"/><configurations v="a;b"/>)"
                                      R"(</valueOverload><valueOverload><value v="1"/>)"
                                      R"(<configurations v=""/></valueOverload></valueOverloads>)"
                                      R"(</disabled>)";

std::unique_ptr<Disabled::ValueOverload> anOverload(bool value, const std::string& configurations)
{
    auto overload = std::make_unique<Disabled::ValueOverload>();
    overload->value().assign(value);
    overload->configurations().assign(configurations);
    return overload;
}

} // namespace

TEST(ValueOverloadable, WritesItsValueAloneWithoutOverloads)
{
    Disabled disabled;
    disabled.value().assign(true);
    EXPECT_EQ(written(disabled), R"(<disabled><value v="1"/></disabled>)");
}

TEST(ValueOverloadable, WritesItsValueAlsoWhenItIsEmpty)
{
    EXPECT_EQ(written(Path()), R"(<path><value v=""/></path>)");
}

TEST(ValueOverloadable, WritesItsOverloadsBehindTheValue)
{
    Disabled disabled;
    disabled.value().assign(true);
    disabled.valueOverloads().pushBack(anOverload(false, "a;b"));
    disabled.valueOverloads().pushBack(anOverload(true, ""));
    EXPECT_EQ(written(disabled), WithOverloads);
}

TEST(ValueOverloadable, ReadsItsOverloads)
{
    const auto disabled = readNew<Disabled>(WithOverloads);
    ASSERT_NE(disabled, nullptr);
    ASSERT_EQ(disabled->valueOverloads().size(), 2u);
    EXPECT_FALSE(disabled->valueOverloads().front().value().get());
    EXPECT_EQ(disabled->valueOverloads().front().configurations().get(), "a;b");
}

TEST(ValueOverloadable, KeepsTheConfigurationsTextAsItStands)
{
    const std::string xml = R"(<format><value v="1"/><valueOverloads><valueOverload>)"
                            R"(<value v="2"/><configurations v="  a ,b;; c "/></valueOverload>)"
                            R"(</valueOverloads></format>)";
    EXPECT_EQ(rewritten<Format>(xml), xml);
}

TEST(ValueOverloadable, ReadsTheOverloadsBeforeTheValue)
{
    const auto format = readNew<Format>(R"(<format><valueOverloads/><value v="3"/></format>)");
    ASSERT_NE(format, nullptr);
    EXPECT_EQ(format->value().get(), 3u);
}

TEST(ValueOverloadable, DropsAnEmptyListOfOverloads)
{
    EXPECT_EQ(rewritten<Format>(R"(<format><value v="3"/><valueOverloads/></format>)"),
              R"(<format><value v="3"/></format>)");
}

TEST(ValueOverloadable, IsRefusedWithoutValue)
{
    Format format;
    EXPECT_EQ(read(format, "<format><valueOverloads/></format>"), MemberMissing);
}

TEST(ValueOverloadable, IsRefusedWithAnOverloadWithoutConfigurations)
{
    Format format;
    EXPECT_EQ(read(format, R"(<format><value v="1"/><valueOverloads><valueOverload><value v="1"/>)"
                           R"(</valueOverload></valueOverloads></format>)"),
              MemberMissing);
}

TEST(ValueOverloadable, IsModifiedByItsValue)
{
    Format format;
    format.value().assign(1);
    EXPECT_TRUE(format.isModified());
}

TEST(ValueOverloadable, IsModifiedByAnOverload)
{
    Disabled disabled;
    disabled.valueOverloads().pushBack(anOverload(false, ""));
    EXPECT_TRUE(disabled.isModified());
}

TEST(ValueOverloadable, StandsUnderTheNameOfTheMember)
{
    RootOutput output;
    output.mipmaps().value().assign(5);
    EXPECT_NE(written(output).find(R"(<mipmaps><value v="5"/></mipmaps>)"), std::string::npos);
}

TEST(ValueOverloadable, IsLeftOutAsAnOptionalMemberAtItsDefault)
{
    EXPECT_EQ(written(RootOutput()).find("mipmaps"), std::string::npos);
}

TEST(ValueOverloadable, ChangesThroughManipulators)
{
    Disabled disabled;
    const auto command = makeCommand([&](ManipulatorContext& context) {
        const ManipulatorStruct<ValueOverloadable<bool>> edit(disabled, context);
        edit.value().set(true);
        edit.valueOverloads().pushBack(anOverload(false, "a;b"));
        edit.valueOverloads().pushBack(anOverload(true, ""));
    });
    command->execute();
    EXPECT_EQ(written(disabled), WithOverloads);
    command->undo();
    EXPECT_FALSE(disabled.isModified());
}

// --- the twelve value types

template <class T>
class OverloadableConstant : public testing::Test
{};

using Constants = testing::Types<KSX_CONSTANT_VALUES>;
TYPED_TEST_SUITE(OverloadableConstant, Constants, );

TYPED_TEST(OverloadableConstant, SurvivesReadingAndWritingWithAnOverload)
{
    using Overload = typename TypeParam::ValueOverload;
    TypeParam constant;
    constant.value().fromString(constant.value().toString());
    constant.valueOverloads().pushBack(std::make_unique<Overload>());
    constant.valueOverloads().at(0).configurations().assign("c");
    const std::string xml = written(constant);
    EXPECT_EQ(rewritten<TypeParam>(xml), xml);
}

TYPED_TEST(OverloadableConstant, HoldsOverloadsOfItsOwnType)
{
    using Overload = typename TypeParam::ValueOverload;
    EXPECT_TRUE((std::is_same_v<typename std::decay_t<decltype(Overload().value())>::ValueType,
                                typename TypeParam::ValueType>));
    EXPECT_NE(TypeParam().valueOverloads().createChild("valueOverload"), nullptr);
    EXPECT_EQ(TypeParam().valueOverloads().createChild("valueOverloads"), nullptr);
}
