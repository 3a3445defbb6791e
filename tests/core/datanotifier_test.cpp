#include "ksx/core/datanotifier.h"

#include "core/listenersimple.h"
#include "core/manipulatorattribute.h"
#include "core/manipulatorlist.h"
#include "data/changeevent.h"
#include "data/content/group.h"
#include "data/content/package.h"
#include "data/content/packagemanipulators.h"
#include "data/content/packageslist.h"
#include "ksx/core/plainroute.h"
#include "support/packagetext.h"
#include <gtest/gtest.h>

using Ksx::Core::DataDynamicFactory;
using Ksx::Core::DataNotifier;
using Ksx::Core::DataStaticFactory;
using Ksx::Core::editPlainly;
using Ksx::Data::Content::Group;
using Ksx::Data::Content::Package;
using Ksx::Data::Content::PackagesList;
using Orv::Core::ManipulatorContext;
using Orv::Core::ManipulatorStruct;
using Orv::Data::BaseObject;
using TestSupport::aGroup;
using TestSupport::aPackage;
using TestSupport::packageFrom;

namespace {

using Lines = std::vector<std::string>;
using PackagesEdit = ManipulatorStruct<PackagesList>;

// Notes the elements of the objects that it is given.
class NotingFunctor final : public DataNotifier::Functor
{
public:
    NotingFunctor(Lines& lines, std::string prefix = {})
        : m_lines(lines), m_prefix(std::move(prefix))
    {}
    void operator()(const BaseObject& object,
                    Orv::Data::ManipulatorContextBase& /*context*/) override
    {
        if (dynamic_cast<const Package*>(&object) != nullptr ||
            dynamic_cast<const Group*>(&object) != nullptr)
            m_lines.push_back(m_prefix + object.getMeta().name.data());
    }

private:
    Lines& m_lines;
    std::string m_prefix;
};

// The notifier on a document of packages.
class DataNotifierTest : public testing::Test
{
protected:
    DataNotifierTest() { notifier.attachTo(document); }
    void edit(const std::function<void(const PackagesEdit&)>& function)
    {
        editPlainly([&](ManipulatorContext& context) {
            function(PackagesEdit(document, context));
            return true;
        });
    }
    void insert(const std::string& content = {})
    {
        edit([&](const PackagesEdit& list) {
            list.content().pushBack(packageFrom(aPackage().containing(content)));
        });
    }
    void rename(std::size_t index, const std::string& identifier)
    {
        edit([&](const PackagesEdit& list) {
            list.content().at(index).identifier().set(identifier);
        });
    }

    Lines lines;
    DataNotifier notifier;
    PackagesList document;
};

TEST_F(DataNotifierTest, GivesEveryObjectThatComesInParentsFirst)
{
    notifier.add(std::make_unique<NotingFunctor>(lines));

    insert(aGroup("a", aGroup("b")));

    EXPECT_EQ(lines, Lines({"package", "group", "group"}));
}

TEST_F(DataNotifierTest, CallsItsEntriesInTheOrderInWhichTheyWereAdded)
{
    notifier.add(std::make_unique<NotingFunctor>(lines, "1 "));
    notifier.add(std::make_unique<NotingFunctor>(lines, "2 "));

    insert(aGroup("a"));

    EXPECT_EQ(lines, Lines({"1 package", "2 package", "1 group", "2 group"}));
}

TEST_F(DataNotifierTest, HearsOfInsertionsDeepBelow)
{
    notifier.add(std::make_unique<NotingFunctor>(lines));
    insert(aGroup("a"));
    lines.clear();

    edit([](const PackagesEdit& list) {
        list.content().at(0).content().pushBack(std::make_unique<Group>());
    });

    EXPECT_EQ(lines, Lines({"group"}));
}

TEST_F(DataNotifierTest, SaysNothingOfChangesOfValues)
{
    notifier.add(std::make_unique<NotingFunctor>(lines));
    insert();
    lines.clear();

    rename(0, "other");

    EXPECT_EQ(lines, Lines());
}

TEST_F(DataNotifierTest, SaysNothingOfWhatGoesAgainAtOnce)
{
    notifier.add(std::make_unique<NotingFunctor>(lines));

    edit([](const PackagesEdit& list) {
        list.content().pushBack(std::make_unique<Package>());
        list.content().erase(0, 1);
    });

    EXPECT_EQ(lines, Lines());
}

TEST_F(DataNotifierTest, SaysNothingOfARefusedEdit)
{
    notifier.add(std::make_unique<NotingFunctor>(lines));

    editPlainly([&](ManipulatorContext& context) {
        PackagesEdit(document, context).content().pushBack(std::make_unique<Package>());
        return false;
    });

    EXPECT_EQ(lines, Lines());
}

TEST_F(DataNotifierTest, SaysNothingOfWhatStoodThereBefore)
{
    insert();
    notifier.add(std::make_unique<NotingFunctor>(lines));

    insert(aGroup("a"));

    EXPECT_EQ(lines, Lines({"package", "group"}));
}

TEST_F(DataNotifierTest, WithoutEntriesDoesNothing)
{
    insert();

    EXPECT_EQ(document.content().size(), 1u);
}

TEST_F(DataNotifierTest, AnEntryOfTheBaseClassDoesNothing)
{
    notifier.add(std::make_unique<DataNotifier::Functor>());
    notifier.add(std::make_unique<NotingFunctor>(lines));

    insert();

    EXPECT_EQ(lines, Lines({"package"}));
}

TEST_F(DataNotifierTest, LeavesOtherDocumentsAlone)
{
    notifier.add(std::make_unique<NotingFunctor>(lines));
    PackagesList other;

    editPlainly([&](ManipulatorContext& context) {
        PackagesEdit(other, context).content().pushBack(std::make_unique<Package>());
        return true;
    });

    EXPECT_EQ(lines, Lines());
}

// The two factories.

using OnAnyChange =
    Orv::Core::ListenerSimple<5, Orv::Data::ChangeType::Descendant | Orv::Data::ChangeType::Local>;

// One for all packages. Counts for the tests: there is no way to reach it.
class StaticBehavior final : public OnAnyChange
{
public:
    using ObjectType = Package;
    void deliver(const Orv::Data::DataMessage& message) override
    {
        told.push_back(static_cast<const Package&>(*message.object.get()).identifier().get());
    }

    static Lines told;
};
Lines StaticBehavior::told;

// One for each group, which knows the group and its argument.
class DynamicBehavior final : public OnAnyChange
{
public:
    using ObjectType = Group;
    DynamicBehavior(const Group& group, Lines* journal, const std::string& word)
        : m_group(&group), m_journal(journal), m_word(word)
    {
        m_journal->push_back("made " + m_group->identifier().get() + " " + m_word);
    }
    ~DynamicBehavior() override { m_journal->push_back("gone " + m_word); }
    bool isOwnedByShadow() const override { return true; }
    void deliver(const Orv::Data::DataMessage&) override
    {
        m_journal->push_back("told " + m_group->identifier().get());
    }

private:
    Orv::Data::DataPointerBox<Group> m_group;
    Lines* m_journal;
    std::string m_word;
};

class DataFactories : public DataNotifierTest
{
protected:
    DataFactories() { StaticBehavior::told.clear(); }
};

TEST_F(DataFactories, TheStaticOneAttachesItsBehaviourToAllObjectsOfItsType)
{
    notifier.add(std::make_unique<DataStaticFactory<StaticBehavior>>());
    insert(aGroup("a"));
    insert();

    rename(0, "second");
    rename(1, "first");

    EXPECT_EQ(StaticBehavior::told, Lines({"second", "first"}));
}

TEST_F(DataFactories, WhatBringsAnObjectInIsNotToldToItsBehaviour)
{
    notifier.add(std::make_unique<DataStaticFactory<StaticBehavior>>());

    insert(aGroup("a"));

    EXPECT_EQ(StaticBehavior::told, Lines());
}

TEST_F(DataFactories, TheDynamicOneMakesABehaviourForEachObjectOfItsType)
{
    notifier.add(
        std::make_unique<DataDynamicFactory<DynamicBehavior, Lines*, std::string>>(&lines, "word"));

    insert(aGroup("a", aGroup("b")));

    EXPECT_EQ(lines, Lines({"made a word", "made b word"}));
}

TEST_F(DataFactories, TheBehaviourOfTheDynamicOneHearsOfItsObject)
{
    notifier.add(
        std::make_unique<DataDynamicFactory<DynamicBehavior, Lines*, std::string>>(&lines, "word"));
    insert(aGroup("a"));
    lines.clear();

    edit([](const PackagesEdit& list) {
        auto content = list.content().at(0).content();
        content.pushBack(std::make_unique<Group>());
        Orv::Core::ManipulatorStruct<Group>(static_cast<const Group&>(content.get()->at(0)),
                                            list.context())
            .identifier()
            .set("renamed");
    });

    EXPECT_EQ(lines, Lines({"made  word", "told renamed"}));
}

TEST_F(DataFactories, TheBehaviourOfTheDynamicOneIsToldThatItsObjectGoesAndEndsWithIt)
{
    notifier.add(
        std::make_unique<DataDynamicFactory<DynamicBehavior, Lines*, std::string>>(&lines, "word"));
    insert(aGroup("a"));
    lines.clear();

    edit([](const PackagesEdit& list) { list.content().erase(0, 1); });

    EXPECT_EQ(lines, Lines({"told a", "gone word"}));
}

TEST_F(DataFactories, BothLeaveObjectsOfOtherTypesAlone)
{
    notifier.add(
        std::make_unique<DataDynamicFactory<DynamicBehavior, Lines*, std::string>>(&lines, "word"));
    notifier.add(std::make_unique<DataStaticFactory<StaticBehavior>>());

    insert();

    EXPECT_EQ(lines, Lines());
}

} // namespace
