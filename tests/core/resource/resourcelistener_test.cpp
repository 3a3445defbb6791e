#include "ksx/core/resourcelistener.h"

#include "data/content/compnode.h"
#include "data/content/packageslist.h"
#include "data/content/resource.h"
#include "data/diagnosticlog.h"
#include "ksx/core/objecturl.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/workspace.h"
#include <QFile>
#include <algorithm>
#include <limits>
#include <sys/stat.h>

namespace {

using namespace Ksx::Core;
using namespace TestSupport;
using Ksx::Data::Content::Resource;

using Lines = std::vector<std::string>;

// Keeps what goes to the log while it lives.
class CapturedLog
{
public:
    CapturedLog()
        : m_number(Orv::DiagnosticLog::addSink([this](const Orv::LogRecord& record) {
              lines.push_back(std::to_string(static_cast<int>(record.level)) + ' ' + record.source +
                              ':' + std::to_string(record.line) + ' ' + record.text);
          }))
    {}
    ~CapturedLog() { Orv::DiagnosticLog::removeSink(m_number); }
    CapturedLog(const CapturedLog&) = delete;
    CapturedLog& operator=(const CapturedLog&) = delete;

    Lines lines;

private:
    int m_number;
};

const Lines Unreachable = {"2 core\\coreresourcelistener:127 Unreachable resource"};
const Lines NotImplemented = {"2 core\\coreresourcelistener:132 Not implemented yet"};

// A resource that is kept as a copy, and not as a link.
std::string aCopiedResource(const std::string& path)
{
    return replaced(
        aResource("a", path), "</resource>",
        "<source><externalcopy><filename v=\"a\"/><lastModif v=\"\"/><checksum v=\"\"/></externalcopy>"
        "</source></resource>");
}

class ResourceListenerTest : public testing::Test
{
protected:
    ResourceListener& open(const std::string& path)
    {
        return openElement(aResource("picture", path));
    }
    ResourceListener& openElement(const std::string& element)
    {
        package = &workspace.open(aPackage().containing(element));
        before = xmlOf(*package);
        return ResourceListener::of(resource());
    }
    const Resource& resource() const
    {
        return static_cast<const Resource&>(package->content().at(0));
    }
    bool canBeUndone()
    {
        const std::string after = xmlOf(*package);
        const bool isUndone = workspace.undoAll() && xmlOf(*package) == before;
        return isUndone && workspace.redoAll() && xmlOf(*package) == after;
    }

    TemporaryDirectory directory;
    Workspace workspace;
    const Ksx::Data::Content::Package* package = nullptr;
    std::string before;
    CapturedLog log;
};

// --- the resource

TEST_F(ResourceListenerTest, IsOneForEachResource)
{
    const ResourceListener& listener = open("a.png");

    EXPECT_EQ(&ResourceListener::of(resource()), &listener);
    EXPECT_EQ(listener.resource(), &resource());
    EXPECT_EQ(xmlOf(*package), before);
}

TEST_F(ResourceListenerTest, KnowsThePathAsItStands)
{
    EXPECT_EQ(open("../b\xC3\xBC/./a b.png").filePath(),
              QString::fromUtf8("../b\xC3\xBC/./a b.png"));
}

TEST_F(ResourceListenerTest, SetsTheCookedFormatInATransaction)
{
    open("a.png").setCookedFormat(4);

    EXPECT_EQ(resource().cookedFormat().get(), 4u);
    EXPECT_EQ(workspace.names().front(), "BeginGroupCommand (SET_COOKED_FORMAT)");
    EXPECT_EQ(workspace.editCount(), 1u);
    EXPECT_TRUE(canBeUndone());
}

TEST_F(ResourceListenerTest, SetsTheCookedQualityInATransaction)
{
    open("a.png").setCookedQuality(0.25F);

    EXPECT_EQ(resource().cookedQuality().get(), Orv::Data::Float1{{0.25F}});
    EXPECT_EQ(workspace.names().front(), "BeginGroupCommand (SET_COOKED_QUALITY)");
    EXPECT_EQ(workspace.editCount(), 1u);
    EXPECT_TRUE(canBeUndone());
}

TEST_F(ResourceListenerTest, RefusesACookedQualityThatIsNotFinite)
{
    ResourceListener& listener = open("a.png");
    listener.setCookedQuality(std::numeric_limits<float>::infinity());
    listener.setCookedQuality(std::numeric_limits<float>::quiet_NaN());

    EXPECT_EQ(workspace.editCount(), 0u);
}

TEST_F(ResourceListenerTest, LinksToAnotherFileByOneEdit)
{
    const std::string file = directory.write("b.tga", "abc");

    EXPECT_TRUE(open("a.png").setFile(QString::fromStdString(file), "TGA"));

    EXPECT_EQ(resource().filepath().get(), file);
    EXPECT_EQ(resource().format().get(), "TGA");
    EXPECT_EQ(resource().checksum().get(), "900150983cd24fb0d6963f7d28e17f72"); // MD5 of "abc"
    EXPECT_FALSE(resource().lastModif().get().empty());
    EXPECT_EQ(workspace.editCount(), 1u);
    EXPECT_TRUE(canBeUndone());
}

TEST_F(ResourceListenerTest, LinksToAMissingFileWithoutItsTimeAndChecksum)
{
    EXPECT_TRUE(open("a.png").setFile("/nowhere/b.png", "PNG"));

    EXPECT_EQ(resource().checksum().get(), "0");
    EXPECT_EQ(resource().lastModif().get(), "");
}

TEST_F(ResourceListenerTest, InsideThePackageLinksToNoOtherFile)
{
    ResourceListener& listener = openElement(aCopiedResource("a.png"));

    EXPECT_FALSE(listener.setFile("/nowhere/b.png", "PNG"));

    EXPECT_EQ(xmlOf(*package), before);
    EXPECT_EQ(workspace.editCount(), 0u);
}

TEST_F(ResourceListenerTest, SetsTheFormatTwiceInTwoTransactions)
{
    ResourceListener& listener = open("a.png");
    listener.setCookedFormat(4);
    const std::size_t once = workspace.names().size();
    listener.setCookedFormat(0);

    EXPECT_EQ(workspace.names().size(), 2 * once);
    EXPECT_EQ(std::count(workspace.names().begin(), workspace.names().end(),
                         "BeginGroupCommand (SET_COOKED_FORMAT)"),
              2);
    EXPECT_EQ(resource().cookedFormat().get(), 0u);
    EXPECT_TRUE(canBeUndone());
}

TEST_F(ResourceListenerTest, SetsTheFormatWithoutServices)
{
    Ksx::Data::Content::PackagesList document;
    document.content().pushBack(packageFrom(aPackage().containing(aResource("a", "a.png"))));
    const auto& lone = static_cast<const Resource&>(document.content().at(0).content().at(0));
    Orv::setLibraryServices(nullptr);
    ResourceListener::of(lone).setCookedFormat(4);

    EXPECT_EQ(lone.cookedFormat().get(), 4u);
}

// --- the file

TEST_F(ResourceListenerTest, ReadsTheLinkedFile)
{
    const ResourceListener& listener = open(directory.write("a.png", std::string("a\0b", 3)));

    EXPECT_TRUE(listener.isReachable());
    EXPECT_EQ(listener.data(), QByteArray("a\0b", 3));
    EXPECT_EQ(log.lines, Lines{});
}

TEST_F(ResourceListenerTest, OpensTheLinkedFileAtItsBeginning)
{
    const auto file = open(directory.write("a.png", "abc")).open();

    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->pos(), 0);
    EXPECT_EQ(file->readAll(), QByteArray("abc"));
}

TEST_F(ResourceListenerTest, ReadsAnEmptyFile)
{
    const ResourceListener& listener = open(directory.write("a.png", ""));

    EXPECT_TRUE(listener.isReachable());
    EXPECT_EQ(listener.data(), QByteArray());
    EXPECT_EQ(log.lines, Lines{});
}

TEST_F(ResourceListenerTest, ReadsAFileThroughALink)
{
    directory.write("a.png", "abc");

    EXPECT_EQ(open(directory.makeLink("b.png", "a.png")).data(), QByteArray("abc"));
}

TEST_F(ResourceListenerTest, ReportsAMissingFile)
{
    EXPECT_EQ(open(directory.path("none.png")).data(), std::nullopt);
    EXPECT_EQ(log.lines, Unreachable);
}

TEST_F(ResourceListenerTest, ReportsAMissingFileEachTime)
{
    const ResourceListener& listener = open(directory.path("none.png"));

    EXPECT_FALSE(listener.isReachable());
    EXPECT_EQ(listener.open(), nullptr);
    EXPECT_EQ(log.lines, (Lines{Unreachable[0], Unreachable[0]}));
}

TEST_F(ResourceListenerTest, ReportsADirectory)
{
    EXPECT_FALSE(open(directory.makeDirectory("a.png")).isReachable());
    EXPECT_EQ(log.lines, Unreachable);
}

TEST_F(ResourceListenerTest, ReportsAPipeAndDoesNotWaitForIt)
{
    const std::string path = directory.path("pipe.png");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);

    EXPECT_EQ(open(path).data(), std::nullopt);
    EXPECT_EQ(log.lines, Unreachable);
}

// Such a file says that it is empty, and may have no end.
TEST_F(ResourceListenerTest, ReportsAFileThatTheKernelMakesUp)
{
    EXPECT_EQ(open("/proc/self/pagemap").data(), std::nullopt);
    EXPECT_EQ(log.lines, Unreachable);
}

TEST_F(ResourceListenerTest, ReportsALinkThatLeadsNowhere)
{
    EXPECT_FALSE(open(directory.makeLink("a.png", "none.png")).isReachable());
    EXPECT_EQ(log.lines, Unreachable);
}

TEST_F(ResourceListenerTest, ReportsAnEmptyPath)
{
    EXPECT_FALSE(open("").isReachable());
    EXPECT_EQ(log.lines, Unreachable);
}

TEST_F(ResourceListenerTest, ReportsThatOtherSourcesAreNotImplemented)
{
    auto document = std::make_unique<Ksx::Data::Content::PackagesList>();
    document->content().pushBack(
        packageFrom(aPackage().containing(aCopiedResource(directory.write("a.png", "abc")))));
    const auto& copy = static_cast<const Resource&>(document->content().at(0).content().at(0));

    EXPECT_EQ(ResourceListener::of(copy).data(), std::nullopt);
    EXPECT_EQ(log.lines, NotImplemented);
}

TEST(DeadResource, SaysNothingAndDoesNothing)
{
    auto document = std::make_unique<Ksx::Data::Content::PackagesList>();
    document->content().pushBack(packageFrom(aPackage().containing(aResource("a", "a.png"))));
    ResourceListener listener(
        static_cast<const Resource&>(document->content().at(0).content().at(0)));
    const CapturedLog log;

    document.reset();

    EXPECT_EQ(listener.resource(), nullptr);
    EXPECT_EQ(listener.filePath(), QString());
    EXPECT_EQ(listener.data(), std::nullopt);
    listener.setCookedFormat(4);
    listener.setCookedQuality(1);
    EXPECT_EQ(log.lines, Lines{});
}

// --- its users

constexpr const char* Url = "pkg://picture?dependency=12";

std::string aUser(const std::string& filter, const std::string& parameters)
{
    return aNode(1, aFilter(filter, parameters), {}, 10, 1);
}

std::string aPath(const std::string& parameter, const std::string& value = Url)
{
    return aParameter(parameter, "", aConstant("String", value));
}

struct UserCase
{
    const char* name;
    std::string node;
    bool isUser;
};

class ResourceUsers : public testing::TestWithParam<UserCase>
{};

TEST_P(ResourceUsers, AreFiltersThatNameTheResource)
{
    GraphText graph;
    graph.nodes = GetParam().node;
    const auto package = packageFrom(aPackage().containing(graph.text()));

    EXPECT_EQ(resourceUsers(Url, *graphIn(*package)).size(), GetParam().isUser ? 1u : 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Nodes, ResourceUsers,
    testing::Values(
        UserCase{"Bitmap", aUser("bitmap", aPath("bitmapresourcepath")), true},
        UserCase{"Svg", aUser("svg", aPath("vectorresourcepath")), true},
        UserCase{"Blend", aUser("blend", aPath("maskvectorresourcepath")), true},
        UserCase{"BlendWithoutMask", aUser("blend", ""), false},
        UserCase{"BlendWithOtherParameters",
                 aUser("blend", aParameter("opacitymult", "", aConstant("Float1", "1"))), false},
        UserCase{"BehindOtherParameters",
                 aUser("blend", aParameter("opacitymult", "", aConstant("Float1", "1")) +
                                    aPath("maskvectorresourcepath")),
                 true},
        UserCase{"ParameterOfAnotherFilter", aUser("bitmap", aPath("vectorresourcepath")), false},
        UserCase{"OtherFilter", aUser("blur", aPath("bitmapresourcepath")), false},
        UserCase{"OtherResource",
                 aUser("bitmap", aPath("bitmapresourcepath", "pkg://other?dependency=12")), false},
        UserCase{"NoText",
                 aUser("bitmap", aParameter("bitmapresourcepath", "", aConstant("Int1", "1"))),
                 false},
        UserCase{"Computed",
                 aUser("bitmap", aParameter("bitmapresourcepath", "", aDynamicValue(0, ""))),
                 false},
        UserCase{"NoFilter", aNode(1, anInputBridge(5), {}, 10, 1), false},
        UserCase{"NoNode", "", false}),
    caseName<UserCase>);

TEST(ResourceUsersOfAGraph, AreInTheOrderOfTheNodes)
{
    GraphText graph;
    graph.nodes = aNode(3, aFilter("svg", aPath("vectorresourcepath"))) +
                  aNode(2, aFilter("blur")) +
                  aNode(1, aFilter("bitmap", aPath("bitmapresourcepath")));
    const auto package = packageFrom(aPackage().containing(graph.text()));
    const auto users = resourceUsers(Url, *graphIn(*package));

    ASSERT_EQ(users.size(), 2u);
    EXPECT_EQ(users[0]->uid().get(), 3u);
    EXPECT_EQ(users[1]->uid().get(), 1u);
}

TEST(ResourceUsersOfAGraph, AreNoneWithoutAUrl)
{
    GraphText graph;
    graph.nodes = aUser("bitmap", aPath("bitmapresourcepath", ""));
    const auto package = packageFrom(aPackage().containing(graph.text()));

    EXPECT_TRUE(resourceUsers("", *graphIn(*package)).empty());
}

TEST(ResourceUsersOfAGraph, AreFoundByTheUrlOfAnOpenResource)
{
    Workspace workspace;
    GraphText graph;
    graph.nodes = aUser("bitmap", aPath("bitmapresourcepath"));
    const auto& package = workspace.open(
        aPackage().containing(aResource("picture", "a.png")).containing(graph.text()),
        "/nowhere/a.obl", 12);

    EXPECT_EQ(resourceUsers(objectUrl(package.content().at(0)), *graphIn(package, 1)).size(), 1u);
    const auto& resource = dynamic_cast<const Resource&>(package.content().at(0));
    EXPECT_EQ(ResourceListener::of(resource).users(*graphIn(package, 1)).size(), 1u);
}

} // namespace
