#include "behavior/retrievedependency.h"

#include "behavior/retrievecompinstancedependency.h"
#include "behavior/retrieveparameterdependency.h"
#include "behaviorfixture.h"
#include "support/functiontext.h"

namespace {

using namespace TestSupport;
using Ksx::Core::Uid;
using Uids = std::vector<Uid>;

// A library, which is dependency 200, and a package, 300, that does not depend on it.
class RetrieveDependency : public BehaviorTest
{
protected:
    static std::string library()
    {
        return GraphText{"a", 1}.text() + aResource("r", "/there/r.png") +
               aFunction("f", 256, aConstant("Float1", "1"));
    }
    void openLibrary(const std::string& fileUid = "{00000000-0000-0000-0000-000000000001}")
    {
        open(aPackage().with("fileUID", fileUid).with("versionUID", "77").containing(library()),
             "/there/lib.obl", 200);
    }
    void openPackage(const std::string& content)
    {
        user = &open(aPackage().containing(content), "/there/user.obl", 300);
    }
    void openBoth(const std::string& content = GraphText{"b", 2}.text())
    {
        openLibrary();
        openPackage(content);
    }
    const Graph& graph() const { return contentAt<Graph>(*user, 0); }

    // "filename uid type fileUID versionUID".
    static Lines elementsOf(const Package& package)
    {
        Lines lines;
        for (const Dependency& dependency : package.dependencies())
            lines.push_back(dependency.filename().get() + " " +
                            std::to_string(dependency.uid().get()) + " " + dependency.type().get() +
                            " " + std::to_string(dependency.fileUID().get()) + " " +
                            std::to_string(dependency.versionUID().get()));
        return lines;
    }
    Uids usedBy(const Package& package) const { return dictionary.dependenciesOf(package); }

    void addNode(std::unique_ptr<Orv::Data::BaseObject> implementation)
    {
        edit([&](ManipulatorContext& context) {
            auto node = std::make_unique<CompNode>();
            node->compImplementation().set(std::move(implementation));
            ManipulatorStruct<Graph>(graph(), context).compNodes().pushBack(std::move(node));
        });
    }
    static std::unique_ptr<CompInstance> instanceOf(const std::string& path)
    {
        auto instance = std::make_unique<CompInstance>();
        instance->path().value().assign(path);
        return instance;
    }
    static std::unique_ptr<Parameter> textParameter(const std::string& name,
                                                    const std::string& text)
    {
        auto value = std::make_unique<ConstantValueString>();
        value->value().assign(text);
        auto parameter = std::make_unique<Parameter>();
        parameter->name().assign(name);
        parameter->paramValue().set(std::move(value));
        return parameter;
    }
    static std::unique_ptr<CompFilter> filter(const std::string& name)
    {
        auto made = std::make_unique<CompFilter>();
        made->filter().assign(name);
        return made;
    }
    void setPath(const std::string& path)
    {
        edit([&](ManipulatorContext& context) {
            ManipulatorStruct<CompInstance>(implementationAt<CompInstance>(graph(), 0), context)
                .path()
                .value()
                .set(path);
        });
    }

    const Package* user = nullptr;
    const std::string libraryElement = "/there/lib.obl 200 package 0 77";
};

// Elements.

TEST_F(RetrieveDependency, AnInstanceOfAnotherPackageMakesAnElement)
{
    openBoth();

    addNode(instanceOf("pkg://a?dependency=200"));

    EXPECT_EQ(elementsOf(*user), Lines{libraryElement});
    EXPECT_EQ(usedBy(*user), Uids{200});
}

TEST_F(RetrieveDependency, TheFileUidOfTheElementIsThatOfThePackageIfItIsANumber)
{
    openLibrary("123456");
    openPackage(GraphText{"b", 2}.text());

    addNode(instanceOf("pkg://a?dependency=200"));

    EXPECT_EQ(elementsOf(*user), Lines{"/there/lib.obl 200 package 123456 77"});
}

TEST_F(RetrieveDependency, AFileUidThatIsTooLargeIsNoNumber)
{
    openLibrary("4294967296");
    openPackage(GraphText{"b", 2}.text());

    addNode(instanceOf("pkg://a?dependency=200"));

    EXPECT_EQ(elementsOf(*user), Lines{libraryElement});
}

TEST_F(RetrieveDependency, AnElementIsMadeOnce)
{
    openBoth();

    addNode(instanceOf("pkg://a?dependency=200"));
    addNode(instanceOf("pkg://a?dependency=200"));

    EXPECT_EQ(elementsOf(*user), Lines{libraryElement});
    EXPECT_EQ(dictionary.usersOf(*user, 200).size(), 2u);
}

TEST_F(RetrieveDependency, AnElementThatIsThereIsUsed)
{
    openLibrary();
    user = &open(
        aPackage().dependingOn("/elsewhere/lib.obl", 200).containing(GraphText{"b", 2}.text()),
        "/there/user.obl", 300);

    addNode(instanceOf("pkg://a?dependency=200"));

    EXPECT_EQ(elementsOf(*user), Lines{"/elsewhere/lib.obl 200 package 0 0"});
}

TEST_F(RetrieveDependency, AReferenceWithinThePackageMakesAnElementForThePackageItself)
{
    openBoth();

    addNode(instanceOf("pkg://b?dependency=300"));

    EXPECT_EQ(elementsOf(*user), Lines{"?himself 300 package 0 0"});
    EXPECT_EQ(usedBy(*user), Uids());
}

TEST_F(RetrieveDependency, APathWithoutADependencyNeedsNoElement)
{
    openBoth();

    addNode(instanceOf("pkg://b"));

    EXPECT_EQ(elementsOf(*user), Lines());
}

TEST_F(RetrieveDependency, AnUnknownDependencyMakesNoElement)
{
    openBoth();

    addNode(instanceOf("pkg://a?dependency=999"));

    EXPECT_EQ(elementsOf(*user), Lines());
    EXPECT_EQ(usedBy(*user), Uids());
}

TEST_F(RetrieveDependency, ATextThatIsNoDataPathMakesNoElement)
{
    openBoth();

    addNode(instanceOf("file.png?dependency=200"));

    EXPECT_EQ(elementsOf(*user), Lines());
}

TEST_F(RetrieveDependency, AnElementThatIsNoLongerNeededStays)
{
    openBoth();
    addNode(instanceOf("pkg://a?dependency=200"));

    editGraph(graph(), [](const auto& manipulator) { manipulator.compNodes().erase(0, 1); });

    EXPECT_EQ(elementsOf(*user), Lines{libraryElement});
    EXPECT_EQ(usedBy(*user), Uids());
}

TEST_F(RetrieveDependency, NothingIsMadeWithoutServices)
{
    openBoth();
    auto* services = Orv::libraryServices();
    Orv::setLibraryServices(nullptr);

    addNode(instanceOf("pkg://a?dependency=200"));

    EXPECT_EQ(elementsOf(*user), Lines());
    Orv::setLibraryServices(services);
}

// Paths that change.

TEST_F(RetrieveDependency, APathThatIsSetMakesAnElement)
{
    openBoth(GraphText{"b", 2, {}, {}, aNode(60, anInstanceOf(""))}.text());

    setPath("pkg://a?dependency=200");

    EXPECT_EQ(elementsOf(*user), Lines{libraryElement});
    EXPECT_EQ(usedBy(*user), Uids{200});
}

TEST_F(RetrieveDependency, APathThatLeadsElsewhereNowIsNoUseOfTheFormerPackage)
{
    openLibrary();
    open(aPackage().containing(library()), "/there/other.obl", 201);
    openPackage(
        GraphText{"b", 2, {}, {}, aNode(60, anInstanceOf("pkg://a?dependency=200"))}.text());

    setPath("pkg://a?dependency=201");

    EXPECT_EQ(usedBy(*user), Uids{201});
    EXPECT_EQ(elementsOf(*user), Lines{"/there/other.obl 201 package 0 1"});
}

TEST_F(RetrieveDependency, AnUndoIsNoted)
{
    openBoth(GraphText{"b", 2, {}, {}, aNode(60, anInstanceOf(""))}.text());
    setPath("pkg://a?dependency=200");

    undo();
    EXPECT_EQ(usedBy(*user), Uids());

    redo();
    EXPECT_EQ(usedBy(*user), Uids{200});
}

TEST_F(RetrieveDependency, ANodeThatGoesAndComesBackIsNoted)
{
    openBoth(GraphText{"b", 2, {}, {}, aNode(60, anInstanceOf("pkg://a?dependency=200"))}.text());
    ASSERT_EQ(usedBy(*user), Uids{200});

    editGraph(graph(), [](const auto& manipulator) { manipulator.compNodes().erase(0, 1); });
    EXPECT_EQ(usedBy(*user), Uids());

    undo();
    EXPECT_EQ(usedBy(*user), Uids{200});
}

// Opening and closing.

TEST_F(RetrieveDependency, WhatIsOpenedIsNotedAndMakesNoElement)
{
    openBoth(GraphText{"b",
                       2,
                       {},
                       {},
                       aNode(60, anInstanceOf("pkg://a?dependency=200")) +
                           aNode(61, anInstanceOf("pkg://b?dependency=300"))}
                 .text());

    EXPECT_EQ(usedBy(*user), Uids{200});
    EXPECT_EQ(elementsOf(*user), Lines());
}

TEST_F(RetrieveDependency, ADependencyThatIsNotOpenIsUsedAllTheSame)
{
    user = &open(
        aPackage()
            .dependingOn("/there/missing.obl", 250)
            .containing(GraphText{"b", 2, {}, {}, aNode(60, anInstanceOf("pkg://a?dependency=250"))}
                            .text()),
        "/there/user.obl", 300);

    EXPECT_EQ(usedBy(*user), Uids{250});
}

TEST_F(RetrieveDependency, APackageThatIsClosedUsesNothing)
{
    openBoth(GraphText{"b", 2, {}, {}, aNode(60, anInstanceOf("pkg://a?dependency=200"))}.text());

    workspace.packages().removePackages({Ksx::Core::PackagesListManager::PackageBox(user)});
    beginHistory();

    EXPECT_EQ(usedBy(*user), Uids()); // the history of commands keeps it alive
}

TEST_F(RetrieveDependency, WhatIsAddedByAnEditBringsAllItsReferences)
{
    openBoth("");

    edit([&](ManipulatorContext& context) {
        auto added = std::make_unique<Graph>();
        auto node = std::make_unique<CompNode>();
        node->compImplementation().set(instanceOf("pkg://a?dependency=200"));
        added->compNodes().pushBack(std::move(node));
        auto group = std::make_unique<Group>();
        group->content().pushBack(std::move(added));
        ManipulatorStruct<Package>(*user, context).content().pushBack(std::move(group));
    });

    EXPECT_EQ(elementsOf(*user), Lines{libraryElement});
    EXPECT_EQ(usedBy(*user), Uids{200});
}

// Where references stand.

TEST_F(RetrieveDependency, OfExternalLinks)
{
    openBoth();
    auto link = std::make_unique<CompExternalLink>();
    link->path().value().assign("pkg://a?dependency=200");

    addNode(std::move(link));

    EXPECT_EQ(elementsOf(*user), Lines{libraryElement});
    EXPECT_EQ(usedBy(*user), Uids{200});
}

struct FilterCase
{
    const char* name;
    const char* filter;
    const char* parameter;
    bool isReference;
};
class RetrieveCompFilterDependency : public RetrieveDependency,
                                     public testing::WithParamInterface<FilterCase>
{};

TEST_P(RetrieveCompFilterDependency, GoesByFilterAndParameter)
{
    openBoth();
    auto made = filter(GetParam().filter);
    made->parameters().pushBack(textParameter(GetParam().parameter, "pkg://r?dependency=200"));

    addNode(std::move(made));

    EXPECT_EQ(elementsOf(*user).size(), GetParam().isReference ? 1u : 0u);
    EXPECT_EQ(usedBy(*user).size(), GetParam().isReference ? 1u : 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Filters, RetrieveCompFilterDependency,
    testing::Values(FilterCase{"Bitmap", "bitmap", "bitmapresourcepath", true},
                    FilterCase{"Drawing", "svg", "vectorresourcepath", true},
                    FilterCase{"Mask", "blend", "maskvectorresourcepath", true},
                    FilterCase{"AnotherParameter", "bitmap", "vectorresourcepath", false},
                    FilterCase{"AnotherFilter", "blur", "bitmapresourcepath", false}),
    [](const auto& one) { return one.param.name; });

TEST_F(RetrieveDependency, OfAFilterThatGetsItsParameterLater)
{
    openBoth();
    addNode(filter("blend"));
    ASSERT_EQ(elementsOf(*user), Lines());

    edit([&](ManipulatorContext& context) {
        ManipulatorStruct<CompFilter>(implementationAt<CompFilter>(graph(), 0), context)
            .parameters()
            .pushBack(textParameter("maskvectorresourcepath", "pkg://r?dependency=200"));
    });

    EXPECT_EQ(elementsOf(*user), Lines{libraryElement});
    EXPECT_EQ(usedBy(*user), Uids{200});
}

TEST_F(RetrieveDependency, OfAFilterWhoseParameterIsEdited)
{
    openBoth();
    auto made = filter("bitmap");
    made->parameters().pushBack(textParameter("bitmapresourcepath", ""));
    addNode(std::move(made));

    edit([&](ManipulatorContext& context) {
        ManipulatorStruct<CompFilter>(implementationAt<CompFilter>(graph(), 0), context)
            .parameters()
            .at(0)
            .paramValue()
            .child<ConstantValueString>()
            .value()
            .set("pkg://r?dependency=200");
    });

    EXPECT_EQ(elementsOf(*user), Lines{libraryElement});
    EXPECT_EQ(usedBy(*user), Uids{200});
}

TEST_F(RetrieveDependency, OfAFilterWhoseParameterGetsAnotherValue)
{
    openBoth(GraphText{
        "b",
        2,
        {},
        {},
        aNode(60, aFilter("bitmap", aParameter("bitmapresourcepath", "", aConstant("Int1", "1"))))}
                 .text());

    edit([&](ManipulatorContext& context) {
        auto value = std::make_unique<ConstantValueString>();
        value->value().assign("pkg://r?dependency=200");
        ManipulatorStruct<CompFilter>(implementationAt<CompFilter>(graph(), 0), context)
            .parameters()
            .at(0)
            .paramValue()
            .set(std::move(value));
    });

    EXPECT_EQ(elementsOf(*user), Lines{libraryElement});
    EXPECT_EQ(usedBy(*user), Uids{200});
}

TEST_F(RetrieveDependency, OfTheTextsOfInputNodes)
{
    openBoth();
    auto bridge = std::make_unique<CompInputBridge>();
    bridge->parameters().pushBack(textParameter("any", "pkg://r?dependency=200"));
    bridge->parameters().pushBack(textParameter("other", "text"));
    bridge->parameters().pushBack(textParameter("own", "pkg://b?dependency=300"));

    addNode(std::move(bridge));

    EXPECT_EQ(elementsOf(*user), Lines({libraryElement, "?himself 300 package 0 0"}));
    EXPECT_EQ(usedBy(*user), Uids{200});
}

TEST_F(RetrieveDependency, OfInstancesOfFunctions)
{
    const std::string node =
        aFunctionNode(5, "instance", 256, {}, aDataItem(aConstant("String", "")));
    openBoth(aFunction("g", 256, aDynamicValue(5, node)));

    edit([&](ManipulatorContext& context) {
        ManipulatorStruct<Function>(contentAt<Function>(*user, 0), context)
            .paramValue()
            .child<DynamicValue>()
            .paramNodes()
            .at(0)
            .funcDatas()
            .at(0)
            .constantValue()
            .child<ConstantValueString>()
            .value()
            .set("pkg://f?dependency=200");
    });

    EXPECT_EQ(elementsOf(*user), Lines{libraryElement});
    EXPECT_EQ(usedBy(*user), Uids{200});
}

TEST_F(RetrieveDependency, OtherFunctionsHaveNoReferences)
{
    const std::string node = aFunctionNode(
        5, "const_string", 32768, {}, aDataItem(aConstant("String", "pkg://f?dependency=200")));
    openBoth(aFunction("g", 256, aDynamicValue(5, node)));

    EXPECT_EQ(usedBy(*user), Uids());
}

// What a behaviour answers.

TEST_F(RetrieveDependency, AnswersTheDependencyThatAnObjectNeeds)
{
    openBoth(GraphText{"b",
                       2,
                       {},
                       {},
                       aNode(60, anInstanceOf("pkg://a?dependency=200")) +
                           aNode(61, anInstanceOf("pkg://b?dependency=300"))}
                 .text());
    const auto& other = implementationAt<CompInstance>(graph(), 0);
    const auto& own = implementationAt<CompInstance>(graph(), 1);
    const Ksx::Core::Behavior::RetrieveCompInstanceDependency behavior(own, nullptr);

    EXPECT_EQ(behavior.retrieve(other), Uid{200});
    EXPECT_EQ(behavior.retrieve(own), std::nullopt);
    EXPECT_EQ(behavior.retrieve(graph()), std::nullopt);
    EXPECT_EQ(behavior.retrieve(CompInstance()), std::nullopt);
}

TEST_F(RetrieveDependency, AnswersTheDependencyOfAParameter)
{
    openBoth(GraphText{"b",
                       2,
                       {},
                       {},
                       {},
                       aParameter("p", "", aConstant("String", "pkg://r?dependency=200")) +
                           aParameter("q", "", aConstant("Float1", "1"))}
                 .text());
    const auto& text = graph().baseParameters().at(0);
    const auto& number = graph().baseParameters().at(1);
    const Ksx::Core::Behavior::RetrieveParameterDependency behavior(number, nullptr);

    EXPECT_EQ(behavior.retrieve(text), Uid{200});
    EXPECT_EQ(behavior.retrieve(number), std::nullopt);
    EXPECT_EQ(usedBy(*user), Uids()); // no document has that behaviour
    EXPECT_EQ(Ksx::Core::Behavior::ParameterListening(text).references().size(), 1u);
    EXPECT_TRUE(Ksx::Core::Behavior::ParameterListening(number).references().empty());
}

} // namespace
