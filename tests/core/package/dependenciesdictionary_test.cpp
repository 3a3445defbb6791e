#include "ksx/core/dependenciesdictionary.h"

#include "core/manipulatorlist.h"
#include "data/content/group.h"
#include "data/content/package.h"
#include "data/content/packagemanipulators.h"
#include "data/content/packageslist.h"
#include "ksx/core/plainroute.h"
#include "support/packagetext.h"
#include <gtest/gtest.h>

using Ksx::Core::DependenciesDictionary;
using Ksx::Core::DependenciesDictionaryUpdater;
using Ksx::Core::editPlainly;
using Ksx::Core::Uid;
using Ksx::Data::Content::Group;
using Ksx::Data::Content::Package;
using Ksx::Data::Content::PackagesList;
using Orv::Core::ManipulatorContext;
using Orv::Core::ManipulatorStruct;

namespace {

using Uids = std::vector<Uid>;

class DependenciesDictionaryTest : public testing::Test
{
protected:
    std::vector<const Orv::Data::BaseObject*> users(Uid dependency) const
    {
        std::vector<const Orv::Data::BaseObject*> live;
        for (const auto& user : dictionary.usersOf(package, dependency))
            live.push_back(user.get());
        return live;
    }
    using Users = std::vector<const Orv::Data::BaseObject*>;

    DependenciesDictionary dictionary;
    Package package;
    Group first;
    Group second;
};

TEST_F(DependenciesDictionaryTest, KnowsNothingAtFirst)
{
    EXPECT_EQ(dictionary.dependenciesOf(package), Uids());
    EXPECT_EQ(users(1), Users());
    EXPECT_FALSE(dictionary.isUsed(package, 1));
}

TEST_F(DependenciesDictionaryTest, GivesUsersInTheOrderInWhichTheyCame)
{
    dictionary.addUse(package, 7, second);
    dictionary.addUse(package, 7, first);

    EXPECT_EQ(users(7), Users({&second, &first}));
    EXPECT_TRUE(dictionary.isUsed(package, 7));
    EXPECT_FALSE(dictionary.isUsed(package, 8));
}

TEST_F(DependenciesDictionaryTest, GivesDependenciesAscending)
{
    dictionary.addUse(package, 4000000000u, first);
    dictionary.addUse(package, 7, first);
    dictionary.addUse(package, 20, second);

    EXPECT_EQ(dictionary.dependenciesOf(package), Uids({7, 20, 4000000000u}));
}

TEST_F(DependenciesDictionaryTest, AUseIsNotedOnce)
{
    dictionary.addUse(package, 7, first);
    dictionary.addUse(package, 7, first);

    EXPECT_EQ(users(7), Users({&first}));
}

TEST_F(DependenciesDictionaryTest, KeepsPackagesApart)
{
    const Package other;
    dictionary.addUse(package, 7, first);
    dictionary.addUse(other, 8, second);

    EXPECT_EQ(dictionary.dependenciesOf(package), Uids({7}));
    EXPECT_EQ(dictionary.dependenciesOf(other), Uids({8}));
}

TEST_F(DependenciesDictionaryTest, ForgetsAUseThatIsRemoved)
{
    dictionary.addUse(package, 7, first);
    dictionary.addUse(package, 7, second);

    EXPECT_TRUE(dictionary.removeUse(package, 7, first));

    EXPECT_EQ(users(7), Users({&second}));
}

TEST_F(DependenciesDictionaryTest, ForgetsADependencyWithItsLastUse)
{
    dictionary.addUse(package, 7, first);

    EXPECT_TRUE(dictionary.removeUse(package, 7, first));

    EXPECT_EQ(dictionary.dependenciesOf(package), Uids());
}

TEST_F(DependenciesDictionaryTest, RemovesNoUseThatItDoesNotKnow)
{
    EXPECT_FALSE(dictionary.removeUse(package, 7, first));
    dictionary.addUse(package, 7, first);

    EXPECT_FALSE(dictionary.removeUse(package, 8, first));
    EXPECT_FALSE(dictionary.removeUse(package, 7, second));
    EXPECT_FALSE(dictionary.removeUse(Package(), 7, first));
    EXPECT_EQ(users(7), Users({&first}));
}

TEST_F(DependenciesDictionaryTest, ADeadUserCountsNoMore)
{
    auto mortal = std::make_unique<Group>();
    dictionary.addUse(package, 7, *mortal);
    dictionary.addUse(package, 8, first);

    mortal.reset();

    EXPECT_EQ(users(7), Users());
    EXPECT_FALSE(dictionary.isUsed(package, 7));
    EXPECT_EQ(dictionary.dependenciesOf(package), Uids({8}));
}

TEST_F(DependenciesDictionaryTest, KeepsTheLivingWhenItForgetsTheDead)
{
    auto mortal = std::make_unique<Group>();
    dictionary.addUse(package, 7, *mortal);
    dictionary.addUse(package, 7, first);
    mortal.reset();

    dictionary.removeDead();

    EXPECT_EQ(users(7), Users({&first}));
}

TEST_F(DependenciesDictionaryTest, ANewPackageInTheMemoryOfADeadOneHasNoUses)
{
    alignas(Package) unsigned char memory[sizeof(Package)];
    auto* dead = new (memory) Package;
    dictionary.addUse(*dead, 7, first);
    dead->~Package();
    auto* fresh = new (memory) Package;

    EXPECT_EQ(dictionary.dependenciesOf(*fresh), Uids());
    fresh->~Package();
}

TEST_F(DependenciesDictionaryTest, TheUpdaterForgetsWhatLeftTheListOfPackages)
{
    PackagesList document;
    DependenciesDictionaryUpdater updater(dictionary);
    editPlainly([&](ManipulatorContext& context) {
        context.addListener(document.content(), updater);
        ManipulatorStruct<PackagesList>(document, context)
            .content()
            .pushBack(std::make_unique<Package>());
        return true;
    });
    dictionary.addUse(document.content().at(0), 7, document.content().at(0).identifier());
    dictionary.addUse(package, 8, first);

    editPlainly([&](ManipulatorContext& context) {
        ManipulatorStruct<PackagesList>(document, context).content().erase(0, 1);
        return true;
    });

    EXPECT_TRUE(document.content().isEmpty());
    EXPECT_EQ(dictionary.dependenciesOf(package), Uids({8}));
}

TEST_F(DependenciesDictionaryTest, TheUpdaterKeepsNothingFromTheListenersAboveIt)
{
    const DependenciesDictionaryUpdater updater(dictionary);

    EXPECT_EQ(updater.getFilter().consumeMask, 0u);
    EXPECT_EQ(updater.getFilter().memberMask, ~0u);
}

// What a behaviour answers that asks a group for its description.
class RetrieveGroupDependency final : public DependenciesDictionary::RetrieveDependency
{
public:
    std::optional<Uid> retrieve(const Orv::Data::BaseObject& object) const override
    {
        const auto* group = dynamic_cast<const Group*>(&object);
        return group == nullptr ? std::nullopt : std::optional<Uid>(group->uid().get());
    }
};

TEST_F(DependenciesDictionaryTest, ABehaviourTellsWhatAnObjectNeeds)
{
    const std::unique_ptr<DependenciesDictionary::RetrieveDependency> retrieve =
        std::make_unique<RetrieveGroupDependency>();
    first.uid().assign(12);

    EXPECT_EQ(retrieve->retrieve(first), 12u);
    EXPECT_EQ(retrieve->retrieve(package), std::nullopt);
}

} // namespace
