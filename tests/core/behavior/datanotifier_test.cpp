#include "ksx/core/datanotifier.h"

#include "core/commanddatamodification.h"
#include "core/listenersimple.h"
#include "core/manipulatorattribute.h"
#include "core/manipulatorlist.h"
#include "data/changeevent.h"
#include "data/content/dynamicvalue.h"
#include "data/content/functionmanipulators.h"
#include "data/content/graphmanipulators.h"
#include "data/content/group.h"
#include "data/content/package.h"
#include "data/content/packagemanipulators.h"
#include "data/content/packageslist.h"
#include "data/content/parametermanipulators.h"
#include "data/content/resource.h"
#include "ksx/core/plainroute.h"
#include "support/packagetext.h"
#include "support/parameterdocument.h"
#include <gtest/gtest.h>

using Ksx::Core::BehaviorOf;
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
    void operator()(const BaseObject& object, const DataNotifier::Arrival& /*arrival*/) override
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
class StaticBehavior final : public OnAnyChange, public BehaviorOf<Package>
{
public:
    void deliver(const Orv::Data::DataMessage& message) override
    {
        told.push_back(static_cast<const Package&>(*message.object).identifier().get());
    }

    static Lines told;
};
Lines StaticBehavior::told;

// One for each group, which knows the group and its argument.
class DynamicBehavior final : public OnAnyChange, public BehaviorOf<Group>
{
public:
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

// Looking only where objects of the wanted classes can stand.

// Notes the elements of the objects of one class, and how they came.
template <class T>
class TypedFunctor final : public DataNotifier::Functor
{
public:
    explicit TypedFunctor(Lines& lines) : Functor({&T::MetaTag::record}), m_lines(lines) {}
    void operator()(const BaseObject& object, const DataNotifier::Arrival& arrival) override
    {
        m_lines.push_back(std::string(object.getMeta().name) +
                          (arrival.edit == nullptr ? "" : " by an edit"));
    }

private:
    Lines& m_lines;
};

class TypedEntries : public DataNotifierTest
{
protected:
    template <class T>
    void want()
    {
        notifier.add(std::make_unique<TypedFunctor<T>>(lines));
    }
    static std::string aValue(const std::string& name)
    {
        return TestSupport::aParameter(
            name, "",
            TestSupport::aDynamicValue(1, TestSupport::aGetter(1, "get_float1", 256, name)));
    }
    // Of every kind of object in which others can stand.
    static std::string everything()
    {
        const std::string cell = "<paramsArrays><paramsArray><name v=\"a\"/><uid v=\"1\"/>"
                                 "<paramsArrayCells><paramsArrayCell><uid v=\"1\"/><parameters>" +
                                 aValue("cell") +
                                 "</parameters></paramsArrayCell></paramsArrayCells></paramsArray>"
                                 "</paramsArrays>";
        const std::string paramsGraph =
            "<paramsGraphs><paramsGraph><name v=\"g\"/><uid v=\"1\"/><paramsGraphDatas>"
            "<paramsGraphData><identifier v=\"d\"/><uid v=\"1\"/><type v=\"t\"/><parameters>" +
            aValue("data") +
            "</parameters></paramsGraphData></paramsGraphDatas><paramsGraphNodes/></paramsGraph>"
            "</paramsGraphs>";
        const std::string filter = "<compFilter><filter v=\"fxmaps\"/><parameters>" +
                                   aValue("filter") + "</parameters>" + cell + paramsGraph +
                                   "</compFilter>";
        const std::string instance = "<compInstance><path><value v=\"\"/></path><parameters>" +
                                     aValue("instance") +
                                     "</parameters><outputBridgings/></compInstance>";
        const std::string bridge = "<compInputBridge><entry v=\"1\"/><parameters>" +
                                   aValue("bridge") + "</parameters></compInputBridge>";
        const std::string function =
            "<function><identifier v=\"f\"/><uid v=\"1\"/><paraminputs/><type><value v=\"256\"/>"
            "</type><paramValue>" +
            TestSupport::aDynamicValue(1, TestSupport::aGetter(1, "get_float1", 256, "body")) +
            "</paramValue></function>";
        const std::string graph =
            "<graph><identifier v=\"g\"/><uid v=\"4\"/><graphOutputs/><compNodes>" + node(filter) +
            node(instance) + node(bridge) + "</compNodes><baseParameters>" + aValue("graph") +
            "</baseParameters><content>" + function + "</content><root/></graph>";
        return aGroup("outer", aGroup("inner", graph)) +
               TestSupport::aResource("r", "/there/r.png");
    }
    static std::string node(const std::string& implementation)
    {
        return "<compNode><uid v=\"1\"/><compImplementation>" + implementation +
               "</compImplementation></compNode>";
    }
};

#ifndef QT_NO_DEBUG
using TypedEntriesDeathTest = TypedEntries;

TEST_F(TypedEntriesDeathTest, OfAClassThatTheWalkNeverMeetsAreRefused)
{
    EXPECT_DEATH(want<Ksx::Data::Content::CompNode>(), "isVisited");
}
#endif

TEST_F(TypedEntries, GetObjectsOfTheirClassAlone)
{
    want<Group>();
    want<Ksx::Data::Content::Resource>();

    insert(everything());

    EXPECT_EQ(lines, Lines({"group", "group", "resource"}));
}

TEST_F(TypedEntries, GetFunctionNodesWhereverAValueCanBeComputed)
{
    want<Ksx::Data::Content::ParamNode>();

    insert(everything());

    EXPECT_EQ(lines, Lines(7, "paramNode"));
}

TEST_F(TypedEntries, GetWhatNodesAre)
{
    want<Ksx::Data::Content::CompFilter>();
    want<Ksx::Data::Content::CompInstance>();
    want<Ksx::Data::Content::CompInputBridge>();

    insert(everything());

    EXPECT_EQ(lines, Lines({"compFilter", "compInstance", "compInputBridge"}));
}

TEST_F(TypedEntries, GetWhatComesInByAnEditAsSuch)
{
    want<Group>();
    insert();

    edit([](const PackagesEdit& list) {
        auto outer = std::make_unique<Group>();
        outer->content().pushBack(std::make_unique<Group>());
        list.content().at(0).content().pushBack(std::move(outer));
    });

    EXPECT_EQ(lines, Lines({"group by an edit", "group by an edit"}));
}

TEST_F(TypedEntries, GetWhatAnUndoBringsBackLikeWhatIsOpened)
{
    insert(aGroup("a"));
    want<Group>();
    Orv::Core::CommandDataModification command(
        [this](ManipulatorContext& context) {
            PackagesEdit(document, context).content().at(0).content().erase(0, 1);
            return true;
        },
        "erase");
    ASSERT_TRUE(command.execute());

    EXPECT_TRUE(command.undo());

    EXPECT_EQ(lines, Lines({"group"}));
}

TEST_F(TypedEntries, GetAnObjectAgainWhenSomethingComesInBelowIt)
{
    insert(aGroup("a"));
    want<Package>();

    edit([](const PackagesEdit& list) {
        list.content().at(0).content().pushBack(std::make_unique<Group>());
    });

    EXPECT_EQ(lines, Lines({"package by an edit"}));
}

TEST_F(TypedEntries, GetWhatComesInAtAnyPlace)
{
    insert(everything());
    want<Ksx::Data::Content::ParamNode>();
    const auto& outer = static_cast<const Group&>(document.content().at(0).content().at(0));
    const auto& inner = static_cast<const Group&>(outer.content().at(0));
    const auto& graph = static_cast<const Ksx::Data::Content::Graph&>(inner.content().at(0));

    editPlainly([&](ManipulatorContext& context) {
        auto value = std::make_unique<Ksx::Data::Content::DynamicValue>();
        value->paramNodes().pushBack(std::make_unique<Ksx::Data::Content::ParamNode>());
        ManipulatorStruct<Ksx::Data::Content::Graph>(graph, context)
            .baseParameters()
            .at(0)
            .paramValue()
            .set(std::move(value));
        return true;
    });

    EXPECT_EQ(lines, Lines({"paramNode by an edit"}));
}

// A behaviour that looks at another place of its object, does so for some objects alone, and acts.
class PickyBehavior final : public OnAnyChange, public BehaviorOf<Group, Package>
{
public:
    PickyBehavior(const Group&, Lines* journal) : m_journal(journal) {}
    static bool concerns(const Group& group) { return group.identifier().get() != "not me"; }
    static std::array<const BaseObject*, 1> placesIn(const Group& group)
    {
        return {&group.identifier()};
    }
    void entered(const Group& group, ManipulatorContext&)
    {
        m_journal->push_back("entered " + group.identifier().get());
    }
    static void watch(const Package& package) { watched.push_back(package.identifier().get()); }
    bool isOwnedByShadow() const override { return true; }
    void deliver(const Orv::Data::DataMessage& message) override
    {
        m_journal->push_back(std::string(message.object->getMeta().name));
    }

    static Lines watched;

private:
    Lines* m_journal;
};
Lines PickyBehavior::watched;

class PickyFactory : public DataNotifierTest
{
protected:
    PickyFactory()
    {
        PickyBehavior::watched.clear();
        notifier.add(std::make_unique<DataDynamicFactory<PickyBehavior, Lines*>>(&lines));
    }
    void addGroup(const std::string& identifier)
    {
        edit([&](const PackagesEdit& list) {
            auto group = std::make_unique<Group>();
            group->identifier().assign(identifier);
            list.content().at(0).content().pushBack(std::move(group));
        });
    }
    void renameGroup(std::size_t index, const std::string& identifier)
    {
        editPlainly([&](ManipulatorContext& context) {
            ManipulatorStruct<Group>(
                static_cast<const Group&>(document.content().at(0).content().at(index)), context)
                .identifier()
                .set(identifier);
            return true;
        });
    }
};

TEST_F(PickyFactory, AttachesTheBehaviourWhereItWantsToBe)
{
    insert(aGroup("a"));

    renameGroup(0, "b");

    EXPECT_EQ(lines, Lines({"identifier"}));
}

TEST_F(PickyFactory, LetsTheBehaviourActOnWhatComesInByAnEdit)
{
    insert(aGroup("a"));

    addGroup("b");

    EXPECT_EQ(lines, Lines({"entered b"}));
}

TEST_F(PickyFactory, MakesNoBehaviourThatHasNothingToDo)
{
    insert();
    addGroup("not me");

    renameGroup(0, "b");

    EXPECT_EQ(lines, Lines());
}

TEST_F(PickyFactory, MakesOneBehaviourHoweverOftenItIsGivenTheObject)
{
    insert(aGroup("a"));
    editPlainly([&](ManipulatorContext& context) {
        ManipulatorStruct<Group>(
            static_cast<const Group&>(document.content().at(0).content().at(0)), context)
            .content()
            .pushBack(std::make_unique<Group>());
        return true;
    });
    lines.clear();

    renameGroup(0, "b");

    EXPECT_EQ(lines, Lines({"identifier"}));
}

TEST_F(PickyFactory, GivesTheBehaviourTheObjectsOfItsSecondClass)
{
    insert();

    EXPECT_EQ(PickyBehavior::watched, Lines({"package"}));
}

// Packages that wait.

class DeferredEntries : public DataNotifierTest
{
protected:
    DeferredEntries()
    {
        notifier.add(std::make_unique<NotingFunctor>(lines));
        notifier.deferOpened();
    }
};

TEST_F(DeferredEntries, HearOfNothingWhenAPackageIsOpened)
{
    insert(aGroup("a"));

    EXPECT_EQ(lines, Lines());
}

TEST_F(DeferredEntries, HearOfOpenedPackagesWhenTheyAreVisited)
{
    insert(aGroup("a"));
    insert();

    notifier.visitOpened();
    notifier.visitOpened();

    EXPECT_EQ(lines, Lines({"package", "group", "package"}));
}

TEST_F(DeferredEntries, HearOfOpenedPackagesAtTheLatestWhenSomethingElseComesIn)
{
    insert();
    insert(aGroup("a"));

    edit([](const PackagesEdit& list) {
        list.content().at(0).content().pushBack(std::make_unique<Group>());
    });

    EXPECT_EQ(lines, Lines({"package", "group", "package", "group", "group"}));
}

TEST_F(DeferredEntries, HearNothingOfOpenedPackagesThatAreStampedAndSaved)
{
    insert(aGroup("a"));

    rename(0, "other");

    EXPECT_EQ(lines, Lines());
}

TEST_F(DeferredEntries, HearNothingOfAPackageThatIsClosedAgain)
{
    insert(aGroup("a"));
    edit([](const PackagesEdit& list) { list.content().erase(0, 1); });

    notifier.visitOpened();

    EXPECT_EQ(lines, Lines());
}

TEST_F(DeferredEntries, HearAtOnceOfWhatComesIntoAnOpenPackage)
{
    insert();
    notifier.visitOpened();
    lines.clear();

    edit([](const PackagesEdit& list) {
        list.content().at(0).content().pushBack(std::make_unique<Group>());
    });

    EXPECT_EQ(lines, Lines({"group"}));
}

} // namespace
