#include "ksx/core/objecturl.h"

#include "data/content/compnode.h"
#include "data/content/group.h"
#include "support/workspace.h"

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Ksx::Data::Content::Graph;
using Ksx::Data::Content::Group;
using Ksx::Data::Content::PackagesList;

// A package that is open under the uid 12: the graph "top" with a node and an output, and the
// group "group" with the graph "inner" in it.
class ObjectUrl : public testing::Test
{
protected:
    static PackageText aPackageOfTwo()
    {
        GraphText top{"top", 4};
        top.nodes = aNode(7, aFilter("blur"), {}, 70, 1);
        top.outputs = anOutput("o", 9);
        return aPackage().containing(top.text() + aGroup("group", GraphText{"inner", 5}.text()));
    }
    const Graph& top() const { return static_cast<const Graph&>(package.content().at(0)); }
    const Group& group() const { return static_cast<const Group&>(package.content().at(1)); }
    const Orv::Data::BaseObject& inner() const { return group().content().at(0); }

    Workspace workspace;
    const Ksx::Data::Content::Package& package =
        workspace.open(aPackageOfTwo(), "/nowhere/a.obl", 12);
};

TEST_F(ObjectUrl, OfContentHoldsItsPlaceAndItsPackage)
{
    EXPECT_EQ(objectUrl(top()), "pkg://top?dependency=12");
    EXPECT_EQ(objectUrl(group()), "pkg://group?dependency=12");
    EXPECT_EQ(objectUrl(inner()), "pkg://group/inner?dependency=12");
}

TEST_F(ObjectUrl, OfAPackageHasNoPlace)
{
    EXPECT_EQ(objectUrl(package), "pkg://?dependency=12");
}

TEST_F(ObjectUrl, OfWhatStandsInContentIsThatOfTheContent)
{
    EXPECT_EQ(objectUrl(top().compNodes().at(0)), "pkg://top?dependency=12");
    EXPECT_EQ(objectUrl(group().content()), "pkg://group?dependency=12");
}

TEST_F(ObjectUrl, LeadsBackToItsObject)
{
    EXPECT_EQ(resolveObjectUrl(objectUrl(package), package), &package);
    EXPECT_EQ(resolveObjectUrl(objectUrl(top()), package), &top());
    EXPECT_EQ(resolveObjectUrl(objectUrl(inner()), package), &inner());
}

TEST_F(ObjectUrl, LeadsIntoAnotherPackage)
{
    const auto& other = workspace.open(aPackage().dependingOn("a.obl", 12), "/nowhere/b.obl", 13);

    EXPECT_EQ(resolveObjectUrl(objectUrl(inner()), other), &inner());
    EXPECT_EQ(resolveObjectUrl("pkg://?dependency=13", package), &other);
}

TEST_F(ObjectUrl, IsNoneOutsideOfOpenPackages)
{
    const auto closed = packageFrom(aPackageOfTwo());

    EXPECT_EQ(objectUrl(*closed), "");
    EXPECT_EQ(objectUrl(closed->content().at(0)), "");
    EXPECT_EQ(objectUrl(Group()), "");
}

TEST(ObjectUrlWithoutServices, IsNone)
{
    PackagesList document;
    document.content().pushBack(packageFrom(aPackage().containing(GraphText().text())));

    EXPECT_EQ(objectUrl(document.content().at(0).content().at(0)), "");
}

TEST(ObjectUrlWithoutServices, LeadsIntoItsOwnPackageAlone)
{
    const auto package =
        packageFrom(aPackage().dependingOnItself(12).containing(GraphText().text()));

    EXPECT_EQ(resolveObjectUrl("pkg://g", *package), &package->content().at(0));
    EXPECT_EQ(resolveObjectUrl("pkg://g?dependency=12", *package), &package->content().at(0));
    EXPECT_EQ(resolveObjectUrl("pkg://g?dependency=13", *package), nullptr);
}

TEST_F(ObjectUrl, WithoutDependencyLeadsIntoThePackageItself)
{
    EXPECT_EQ(resolveObjectUrl("pkg://group/inner", package), &inner());
    EXPECT_EQ(resolveObjectUrl("pkg://", package), &package);
}

TEST_F(ObjectUrl, OfThePackageItselfIsNotLookedForAmongOthers)
{
    const auto& other = workspace.open(
        aPackage().dependingOnItself(12).containing(GraphText{"top"}.text()), "/nowhere/b.obl", 13);
    ASSERT_EQ(other.dependencies().at(0).uid().get(), 12u);

    EXPECT_EQ(resolveObjectUrl("pkg://top?dependency=12", other), &other.content().at(0));
}

TEST_F(ObjectUrl, LeadsNowhereWhereThereIsNothing)
{
    EXPECT_EQ(resolveObjectUrl("pkg://none?dependency=12", package), nullptr);
    EXPECT_EQ(resolveObjectUrl("pkg://group/none?dependency=12", package), nullptr);
    EXPECT_EQ(resolveObjectUrl("pkg://inner?dependency=12", package), nullptr);
    EXPECT_EQ(resolveObjectUrl("pkg://top/inner?dependency=12", package), nullptr);
    EXPECT_EQ(resolveObjectUrl("pkg://TOP?dependency=12", package), nullptr);
}

TEST_F(ObjectUrl, LeadsNowhereThroughAnUnknownOrBadDependency)
{
    EXPECT_EQ(resolveObjectUrl("pkg://top?dependency=99", package), nullptr);
    EXPECT_EQ(resolveObjectUrl("pkg://top?dependency=", package), nullptr);
    EXPECT_EQ(resolveObjectUrl("pkg://top?dependency", package), nullptr);
    EXPECT_EQ(resolveObjectUrl("pkg://top?dependency=-1", package), nullptr);
    EXPECT_EQ(resolveObjectUrl("pkg://top?dependency=12x", package), nullptr);
    EXPECT_EQ(resolveObjectUrl("pkg://top?dependency=4294967308", package), nullptr);
}

TEST_F(ObjectUrl, LeadsNowhereIfItIsNone)
{
    EXPECT_EQ(resolveObjectUrl("", package), nullptr);
    EXPECT_EQ(resolveObjectUrl("top", package), nullptr);
    EXPECT_EQ(resolveObjectUrl("PKG://top", package), nullptr);
    EXPECT_EQ(resolveObjectUrl("file:///nowhere/a.obl", package), nullptr);
}

TEST_F(ObjectUrl, WithATypeLeadsIntoTheObject)
{
    const std::string url = objectUrl(top());

    EXPECT_EQ(resolveObjectUrl(url + "&typeParam=CompNodeType&compNodeUidParam=7", package),
              &top().compNodes().at(0));
    EXPECT_EQ(resolveObjectUrl(url + "&typeParam=GraphOutputType&graphOutputUidParam=9", package),
              &top().graphOutputs().at(0));
}

TEST_F(ObjectUrl, WithATypeLeadsNowhereForAnUnknownUidOrKind)
{
    const std::string url = objectUrl(top());

    EXPECT_EQ(resolveObjectUrl(url + "&typeParam=CompNodeType&compNodeUidParam=8", package),
              nullptr);
    EXPECT_EQ(resolveObjectUrl(url + "&typeParam=CompNodeType", package), nullptr);
    EXPECT_EQ(resolveObjectUrl(url + "&typeParam=OtherType&compNodeUidParam=7", package), nullptr);
}

} // namespace
