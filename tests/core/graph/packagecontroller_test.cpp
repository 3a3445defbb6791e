#include "ksx/core/packagecontroller.h"

#include "core/commanddatamodification.h"
#include "data/content/group.h"
#include "data/content/resource.h"
#include "ksx/core/packagelistener.h"
#include "ksx/core/resourcelistener.h"
#include "ksx/core/uidsource.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/workspace.h"
#include <QCryptographicHash>
#include <QDateTime>
#include <QFile>
#include <sys/stat.h>

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Ksx::Data::Content::Graph;
using Ksx::Data::Content::Group;
using Ksx::Data::Content::PackagesList;
using Ksx::Data::Content::Resource;

constexpr Uid FirstCount = 0xF39AC68Fu;
constexpr std::uint32_t Bitmap = 3;

// The clock stands at 1000 seconds, and uids begin as in a new process.
class PackageControllerTest : public testing::Test
{
protected:
    PackageControllerTest()
    {
        UidSource::setClock([] { return std::time_t{1000}; });
    }
    ~PackageControllerTest() override { UidSource::setClock({}); }
    PackageController& open(const PackageText& text = aPackage())
    {
        package = &workspace.open(text);
        before = xmlOf(*package);
        controller = PackageListener::of(*package).controller();
        UidSource::shared().setCounter(FirstCount);
        return *controller;
    }
    // The identifiers of the package's content.
    std::string names() const
    {
        std::string names;
        for (const auto& item : package->content())
            names += (names.empty() ? "" : " ") +
                     dynamic_cast<const Ksx::Data::Content::ContentInterface&>(item)
                         .identifierAttribute()
                         .get();
        return names;
    }
    const Resource* addPicture(const std::string& path)
    {
        const auto* listener =
            controller->addLinkedResource(Bitmap, "PNG", "picture", QString::fromStdString(path));
        return listener == nullptr ? nullptr : listener->resource();
    }
    bool canBeUndone()
    {
        const std::string after = xmlOf(*package);
        const bool isUndone = workspace.undoAll() && xmlOf(*package) == before;
        return isUndone && workspace.redoAll() && xmlOf(*package) == after;
    }

    Workspace workspace;
    const Ksx::Data::Content::Package* package = nullptr;
    QSharedPointer<PackageController> controller;
    std::string before;
};

// Of a package that stands in no workspace, so that it can die.
std::unique_ptr<PackagesList> aDocument(const PackageText& text)
{
    auto document = std::make_unique<PackagesList>();
    document->content().pushBack(packageFrom(text));
    return document;
}

// --- how it is found

TEST_F(PackageControllerTest, IsTheSameOneForAllWhoKeepIt)
{
    open();

    EXPECT_EQ(PackageListener::of(*package).controller(), controller);
}

TEST_F(PackageControllerTest, DiesWhenNobodyKeepsItAndIsMadeAnew)
{
    open();
    const QWeakPointer<PackageController> former = controller;

    controller.clear();

    EXPECT_TRUE(former.isNull());
    EXPECT_EQ(PackageListener::of(*package).controller()->package(), package);
}

TEST_F(PackageControllerTest, EachPackageHasOneListener)
{
    open();
    const auto& other = workspace.open(aPackage());

    EXPECT_EQ(&PackageListener::of(*package), &PackageListener::of(*package));
    EXPECT_NE(&PackageListener::of(*package), &PackageListener::of(other));
}

TEST_F(PackageControllerTest, KnowsThePackagesIdentifier)
{
    EXPECT_EQ(open(aPackage().named("wood")).identifier(), QString("wood"));
}

TEST_F(PackageControllerTest, AnswersNothingOnceThePackageHasDied)
{
    auto document = aDocument(aPackage().named("a").containing(GraphText().text()));
    controller = PackageListener::of(document->content().at(0)).controller();

    document.reset();

    EXPECT_EQ(controller->package(), nullptr);
    EXPECT_EQ(controller->identifier(), QString());
    EXPECT_EQ(controller->addGraph("g"), nullptr);
    EXPECT_EQ(controller->addGraphObject("g").get(), nullptr);
    EXPECT_EQ(controller->addLinkedResource(Bitmap, "PNG", "r", "r.png"), nullptr);
    EXPECT_TRUE(controller->collectGraphs().empty());
    EXPECT_TRUE(workspace.names().empty());
}

TEST_F(PackageControllerTest, CollectsTheGraphsOfThePackage)
{
    const auto& opened = open(aPackage().containing(
        GraphText{"a"}.text() + aGroup("group", GraphText{"b"}.text()) + GraphText{"c"}.text()));

    ASSERT_EQ(opened.collectGraphs().size(), 3u);
    EXPECT_EQ(opened.collectGraphs()[1]->identifier().get(), "b");
    EXPECT_EQ(opened.collectGraphs(0).size(), 2u);
}

// --- new graphs

TEST_F(PackageControllerTest, AddsAnEmptyGraphAndAnswersItsController)
{
    const CompGraphController* added = open().addGraph("wood");
    ASSERT_NE(added, nullptr);
    EXPECT_EQ(added, graphController(graphIn(*package)));
    EXPECT_EQ(graphIn(*package)->identifier().get(), "wood");
    EXPECT_EQ(graphIn(*package)->compNodes().size(), 0u);
    EXPECT_TRUE(graphIn(*package)->attributes().description().get().empty());
}

TEST_F(PackageControllerTest, AddsAGraphInOneEditWithoutHistoryText)
{
    open().addGraph("wood");

    EXPECT_EQ(workspace.names(), std::vector<std::string>{""});
    EXPECT_TRUE(canBeUndone());
}

TEST_F(PackageControllerTest, ManyGraphsCanBeUndone)
{
    open(aPackage().containing(aGroup("g")));
    controller->addGraph("g", 0);
    controller->addGraph("g");
    controller->addGraph("", 1);

    EXPECT_EQ(names(), "g_1 DEFAULT_NEW_GRAPH_IDENTIFIER g g_2");
    EXPECT_TRUE(canBeUndone());
}

TEST_F(PackageControllerTest, TheBoxOfAGraphIsThatOfTheObject)
{
    const auto graph = open().addGraphObject("wood");

    EXPECT_EQ(graph.get(), graphIn(*package).get());
}

TEST_F(PackageControllerTest, TheFirstGraphsUidIsTheTimePlusTheFirstCount)
{
    open().addGraph("a");

    EXPECT_EQ(graphIn(*package)->uid().get(), FirstCount + 1000u);
}

TEST_F(PackageControllerTest, GraphsOfOneSecondHaveDifferentUids)
{
    open().addGraph("a");
    controller->addGraph("b");

    EXPECT_EQ(graphIn(*package, 0)->uid().get(), FirstCount + 1000u);
    EXPECT_EQ(graphIn(*package, 1)->uid().get(), FirstCount + 1001u);
}

TEST_F(PackageControllerTest, AUidThatAnyContentHasIsPassedOver)
{
    GraphText taken;
    taken.uid = FirstCount + 1000u;
    open(aPackage().containing(aGroup("group", taken.text())));

    controller->addGraph("a");

    EXPECT_EQ(graphIn(*package, 1)->uid().get(),
              FirstCount + 1000u + ((FirstCount + 1001u) & 0xFFu));
}

TEST_F(PackageControllerTest, AnEmptyIdentifierGivesTheDefaultAndThenANumber)
{
    open().addGraph("");
    controller->addGraph("");
    controller->addGraph("");

    EXPECT_EQ(names(), "DEFAULT_NEW_GRAPH_IDENTIFIER DEFAULT_NEW_GRAPH_IDENTIFIER_1 "
                       "DEFAULT_NEW_GRAPH_IDENTIFIER_2");
}

TEST_F(PackageControllerTest, ATakenIdentifierGetsANumber)
{
    open(aPackage().containing(aGroup("Graph_7")).containing(aResource("Graph", "a.png")));

    controller->addGraph("Graph");
    controller->addGraph("Graph_7");

    EXPECT_EQ(names(), "Graph_7 Graph Graph_1 Graph_8");
}

struct IdentifierCase
{
    const char* name;
    const char* wanted; // in UTF-8
    const char* expected;
};

class NewGraphIdentifier : public testing::TestWithParam<IdentifierCase>
{};

TEST_P(NewGraphIdentifier, IsLegal)
{
    Workspace workspace;
    const auto& package = workspace.open(aPackage());
    PackageListener::of(package).controller()->addGraph(QString::fromUtf8(GetParam().wanted));

    EXPECT_EQ(graphIn(package)->identifier().get(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Texts, NewGraphIdentifier,
                         testing::Values(IdentifierCase{"Plain", "wood", "wood"},
                                         IdentifierCase{"Blanks", " old wood ", "old_wood"},
                                         IdentifierCase{"PathsAndMarkup", "a/b<c>?d", "a_b_c__d"},
                                         IdentifierCase{"Latin1",
                                                        "b\xC3\xBC"
                                                        "cher",
                                                        "b_cher"},
                                         IdentifierCase{"OtherScripts", "\xE6\x9C\xA8x", "x"},
                                         IdentifierCase{"NothingLegal", "/",
                                                        "DEFAULT_NEW_GRAPH_IDENTIFIER"}),
                         caseName<IdentifierCase>);

struct PlaceCase
{
    const char* name;
    std::uint32_t index;
    const char* expected;
};

class PlaceOfContent : public testing::TestWithParam<PlaceCase>
{
protected:
    std::string names() const
    {
        std::string names;
        for (const auto& item : package.content())
            names += dynamic_cast<const Ksx::Data::Content::ContentInterface&>(item)
                         .identifierAttribute()
                         .get();
        return names;
    }

    Workspace workspace;
    const Ksx::Data::Content::Package& package =
        workspace.open(aPackage().containing(aGroup("a") + aGroup("b")));
};

TEST_P(PlaceOfContent, OfAGraph)
{
    PackageListener::of(package).controller()->addGraph("x", GetParam().index);

    EXPECT_EQ(names(), GetParam().expected);
}

TEST_P(PlaceOfContent, OfAResource)
{
    PackageListener::of(package).controller()->addLinkedResource(Bitmap, "PNG", "x", "x.png",
                                                                 GetParam().index);

    EXPECT_EQ(names(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Indexes, PlaceOfContent,
                         testing::Values(PlaceCase{"First", 0, "xab"},
                                         PlaceCase{"Middle", 1, "axb"}, PlaceCase{"Last", 2, "abx"},
                                         PlaceCase{"End", EndOfContent, "abx"},
                                         PlaceCase{"BeyondTheEnd", 3, "abx"}),
                         caseName<PlaceCase>);

TEST(PackageControllerWithoutServices, AddsGraphsAllTheSame)
{
    const auto document = aDocument(aPackage());
    const auto controller = PackageListener::of(document->content().at(0)).controller();

    EXPECT_NE(controller->addGraph("a"), nullptr);
    EXPECT_EQ(document->content().at(0).content().size(), 1u);
}

// --- insertion into other containers

class InsertContent : public testing::Test
{
protected:
    const Ksx::Data::Content::ContentObjectBase*
    insert(const Orv::Data::BaseObject& container,
           std::unique_ptr<Ksx::Data::Content::ContentObjectBase> object)
    {
        const Ksx::Data::Content::ContentObjectBase* inserted = nullptr;
        Orv::Core::CommandDataModification command(
            [&](Orv::Core::ManipulatorContext& context) {
                inserted = insertContent(container, context, std::move(object));
                return inserted != nullptr;
            },
            "insert");
        command.execute();
        return inserted;
    }
    const Orv::Data::BaseObject& item(std::size_t index) const
    {
        return document->content().at(0).content().at(index);
    }

    std::unique_ptr<PackagesList> document =
        aDocument(aPackage()
                      .containing(aGroup("group", aGroup("x")))
                      .containing(GraphText().text())
                      .containing(aResource("picture", "a.png")));
};

TEST_F(InsertContent, IntoAGroupMakesTheIdentifierUniqueThere)
{
    auto graph = std::make_unique<Graph>();
    graph->identifier().assign("x");

    const auto* inserted = dynamic_cast<const Graph*>(insert(item(0), std::move(graph)));

    ASSERT_NE(inserted, nullptr);
    EXPECT_EQ(inserted->identifier().get(), "x_1");
    EXPECT_EQ(&static_cast<const Group&>(item(0)).content().at(1), inserted);
}

TEST_F(InsertContent, IntoAGraphTakesGroups)
{
    auto group = std::make_unique<Group>();
    group->identifier().assign("picture");

    const auto* inserted = dynamic_cast<const Group*>(insert(item(1), std::move(group)));

    ASSERT_NE(inserted, nullptr);
    EXPECT_EQ(inserted->identifier().get(), "picture");
    EXPECT_NE(inserted->uid().get(), 0u);
}

TEST_F(InsertContent, IntoOtherObjectsIsRefused)
{
    EXPECT_EQ(insert(item(2), std::make_unique<Graph>()), nullptr);
}

TEST_F(InsertContent, IntoWhatStandsInNoPackageIsRefused)
{
    EXPECT_EQ(insert(Group(), std::make_unique<Graph>()), nullptr);
}

// --- linked resources

class LinkedResource : public PackageControllerTest
{
protected:
    LinkedResource() { open(); }

    TemporaryDirectory directory;
};

TEST_F(LinkedResource, HoldsWhatItIsToldAndTheSumOfItsFile)
{
    const Resource* resource = addPicture(directory.write("a.png", "abc"));

    ASSERT_NE(resource, nullptr);
    EXPECT_EQ(resource->identifier().get(), "picture");
    EXPECT_EQ(resource->type().get(), Bitmap);
    EXPECT_EQ(resource->format().get(), "PNG");
    EXPECT_EQ(resource->filepath().get(), directory.path("a.png"));
    EXPECT_EQ(resource->checksum().get(), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(resource->uid().get(), FirstCount + 1000u);
    EXPECT_TRUE(resource->source().isEmpty());
}

TEST_F(LinkedResource, IsOneEditWithAHistoryText)
{
    addPicture(directory.write("a.png", "abc"));

    EXPECT_EQ(workspace.names(), std::vector<std::string>{"ADD_LINKED_RESOURCE_HISTORY_DESC"});
    EXPECT_TRUE(canBeUndone());
}

TEST_F(LinkedResource, IsReachedThroughTheListenerOfTheResource)
{
    auto* listener = controller->addLinkedResource(Bitmap, "PNG", "a", "a.png");

    EXPECT_EQ(listener,
              &ResourceListener::of(static_cast<const Resource&>(package->content().at(0))));
}

TEST_F(LinkedResource, KnowsTheTimeOfItsFile)
{
    QFile file(QString::fromStdString(directory.write("a.png", "abc")));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(QDateTime::fromString("2020-01-02T03:04:05", Qt::ISODate),
                                 QFileDevice::FileModificationTime));
    file.close();

    EXPECT_EQ(addPicture(directory.path("a.png"))->lastModif().get(), "2020-01-02T03:04:05");
}

TEST_F(LinkedResource, SumsUpMoreThanOneBufferOfAFile)
{
    const std::string bytes(1000003, '\x80');
    const QByteArray sum =
        QCryptographicHash::hash(QByteArray::fromStdString(bytes), QCryptographicHash::Md5);

    EXPECT_EQ(addPicture(directory.write("a.png", bytes))->checksum().get(),
              sum.toHex().toStdString());
}

TEST_F(LinkedResource, OfAMissingFileHasNeitherSumNorTime)
{
    const Resource* resource = addPicture(directory.path("none.png"));

    ASSERT_NE(resource, nullptr);
    EXPECT_EQ(resource->checksum().get(), "0");
    EXPECT_EQ(resource->lastModif().get(), "");
    EXPECT_TRUE(canBeUndone());
}

TEST_F(LinkedResource, OfAnEmptyFileHasNoSum)
{
    const Resource* resource = addPicture(directory.write("a.png", ""));

    EXPECT_EQ(resource->checksum().get(), "0");
    EXPECT_NE(resource->lastModif().get(), "");
}

TEST_F(LinkedResource, OfADirectoryHasNoSum)
{
    EXPECT_EQ(addPicture(directory.makeDirectory("a.png"))->checksum().get(), "0");
}

TEST_F(LinkedResource, OfAPipeHasNoSumAndDoesNotWaitForOne)
{
    const std::string path = directory.path("pipe.png");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);

    EXPECT_EQ(addPicture(path)->checksum().get(), "0");
}

TEST_F(LinkedResource, OfNoPathHasNeitherSumNorTime)
{
    const Resource* resource = addPicture("");

    EXPECT_EQ(resource->filepath().get(), "");
    EXPECT_EQ(resource->checksum().get(), "0");
    EXPECT_EQ(resource->lastModif().get(), "");
}

TEST_F(LinkedResource, KeepsItsPathAsItIsGiven)
{
    EXPECT_EQ(addPicture("../x/./b\xC3\xBC cher.png")->filepath().get(),
              "../x/./b\xC3\xBC cher.png");
}

TEST_F(LinkedResource, OfAFileWithANameThatIsNotAsciiIsSummedUp)
{
    EXPECT_EQ(addPicture(directory.write("b\xC3\xBC.png", "abc"))->checksum().get(),
              "900150983cd24fb0d6963f7d28e17f72");
}

TEST_F(LinkedResource, WithoutAnIdentifierGetsTheDefaultAndThenANumber)
{
    controller->addLinkedResource(Bitmap, "PNG", "", "a.png");
    controller->addLinkedResource(Bitmap, "PNG", "", "a.png");

    EXPECT_EQ(names(), "DEFAULT_NEW_RESOURCE_IDENTIFIER DEFAULT_NEW_RESOURCE_IDENTIFIER_1");
}

TEST_F(LinkedResource, SharesIdentifiersAndUidsWithGraphs)
{
    controller->addGraph("a");
    controller->addLinkedResource(Bitmap, "PNG", "a", "a.png");

    EXPECT_EQ(names(), "a a_1");
    EXPECT_EQ(static_cast<const Resource&>(package->content().at(1)).uid().get(),
              FirstCount + 1001u);
}

} // namespace
