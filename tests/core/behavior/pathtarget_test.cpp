#include "behavior/pathtarget.h"

#include "behaviorfixture.h"
#include "ksx/core/objecturl.h"

namespace {

using namespace TestSupport;

struct PathCase
{
    const char* name;
    const char* path;
    bool isMeant;
};

// A graph "a" in a group "g" of the package 100; and another package, 200, with a group "g" of its
// own.
class PathTarget : public BehaviorTest, public testing::WithParamInterface<PathCase>
{
protected:
    PathTarget()
    {
        package = &openWith(aGroup("g", GraphText{"a", 1}.text() + GraphText{"a", 2}.text()) +
                            GraphText{"a", 3}.text());
        other = &open(aPackage()
                          .dependingOn("/there/own.obl", 100)
                          .containing(aGroup("g", GraphText{"a", 1}.text())),
                      "/there/other.obl", 200);
    }
    const Graph& graph(std::size_t index = 0) const
    {
        return dynamic_cast<const Graph&>(contentAt<Group>(*package, 0).content().at(index));
    }

    const Package* package = nullptr;
    const Package* other = nullptr;
};

TEST_P(PathTarget, IsNamedByAPathThatLeadsToIt)
{
    EXPECT_EQ(Ksx::Core::Behavior::PathTarget(graph()).isNamedBy(GetParam().path, *package),
              GetParam().isMeant);
    EXPECT_EQ(Ksx::Core::resolveObjectUrl(GetParam().path, *package) == &graph(),
              GetParam().isMeant);
}

INSTANTIATE_TEST_SUITE_P(
    Paths, PathTarget,
    testing::Values(PathCase{"OfItsPackage", "pkg://g/a?dependency=100", true},
                    PathCase{"WithoutADependency", "pkg://g/a", true},
                    PathCase{"WithEmptySegments", "pkg:///g//a/?dependency=100", true},
                    PathCase{"OfAnotherPackage", "pkg://g/a?dependency=200", false},
                    PathCase{"OfAnUnknownPackage", "pkg://g/a?dependency=999", false},
                    PathCase{"OfNoNumber", "pkg://g/a?dependency=x", false},
                    PathCase{"OfAnotherObject", "pkg://a?dependency=100", false},
                    PathCase{"OfItsGroup", "pkg://g?dependency=100", false},
                    PathCase{"OfSomethingInIt",
                             "pkg://g/a?dependency=100&typeParam=CompNodeType&compNodeUidParam=1",
                             false},
                    PathCase{"NoPath", "file://g/a?dependency=100", false},
                    PathCase{"Empty", "", false}),
    [](const auto& one) { return one.param.name; });

TEST_F(PathTarget, IsNamedFromOtherPackagesToo)
{
    Ksx::Core::Behavior::PathTarget target(graph());

    EXPECT_TRUE(target.isNamedBy("pkg://g/a?dependency=100", *other));
    EXPECT_FALSE(target.isNamedBy("pkg://g/a", *other));
}

TEST_F(PathTarget, IsNotMeantBehindAnotherOfItsName)
{
    EXPECT_FALSE(Ksx::Core::Behavior::PathTarget(graph(1)).isNamedBy("pkg://g/a", *package));
}

TEST_F(PathTarget, OutsideOfPackagesIsNotMeant)
{
    const Graph loose;

    EXPECT_FALSE(Ksx::Core::Behavior::PathTarget(loose).isNamedBy("pkg://", *package));
}

} // namespace
