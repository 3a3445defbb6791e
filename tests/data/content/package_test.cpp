#include "data/content/package.h"

#include "data/content/binboon.h"
#include "data/content/binembedded.h"
#include "data/content/externalcopy.h"
#include "data/content/function.h"
#include "data/content/graph.h"
#include "data/content/group.h"
#include "data/content/packageslist.h"
#include "data/content/resource.h"
#include "data/content/xmltext.h"
#include "support/shelfcases.h"
#include <QBuffer>
#include <boost/lexical_cast/bad_lexical_cast.hpp>
#include <gtest/gtest.h>

using namespace Ksx::Data::Content;
using TestSupport::caseName;
using TestSupport::MemberMissing;
using TestSupport::read;
using TestSupport::readNew;
using TestSupport::rewritten;
using TestSupport::without;
using TestSupport::written;

namespace {

// A package with each required member and nothing else, in the order of writing.
const std::string Smallest =
    R"(<package><packageType v="Kestrix"/><identifier v="p"/><formatVersion v="1.1.0.201505"/>)"
    R"(<platform v="1"/><author v=""/><fileUID v="{a}"/><versionUID v="7"/><configurations>)"
    R"(<name v="root"/><uid v="2"/><configuration/></configurations><dependencies/><content/>)"
    R"(</package>)";

const std::string SmallestResource =
    R"(<resource><identifier v="r"/><uid v="4"/><type v="1"/><format v="png"/>)"
    R"(<filepath v="a/b.png"/><lastModif v=""/><checksum v=""/></resource>)";

const std::string SmallestGroup = R"(<group><uid v="3"/><identifier v="g"/><content/></group>)";

// The package with something else in the place of its content.
std::string withContent(const std::string& items)
{
    return without(Smallest, "<content/>", "<content>" + items + "</content>");
}

struct PartCase
{
    const char* name;
    std::string part;
};

} // namespace

// --- the package

TEST(Package, IsValidWhenNewApartFromItsNames)
{
    const Package package;
    EXPECT_EQ(package.packageType().get(), "Kestrix");
    EXPECT_EQ(package.platform().get(), 1u);
    EXPECT_TRUE(package.content().isEmpty());
    EXPECT_TRUE(package.dependencies().isEmpty());
}

TEST(Package, WritesItsRequiredMembersWhenNew)
{
    EXPECT_EQ(
        written(Package()),
        R"(<package><packageType v="Kestrix"/><identifier v=""/><formatVersion v=""/>)"
        R"(<platform v="1"/><author v=""/><fileUID v=""/><versionUID v="0"/><configurations>)"
        R"(<name v=""/><uid v="0"/><configuration/></configurations><dependencies/><content/>)"
        R"(</package>)");
}

TEST(Package, StandsOnOneLineBehindTheDeclaration)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    Orv::Data::XmlDataWriter(&buffer).write(Package());
    const std::string text = buffer.data().toStdString();
    EXPECT_EQ(text.rfind(R"(<?xml version="1.0" encoding="UTF-8"?><package>)", 0), 0u);
    EXPECT_EQ(text.find('\n'), text.size() - 1);
}

TEST(Package, IsTheSameAfterReadingAndWriting)
{
    EXPECT_EQ(rewritten<Package>(Smallest), Smallest);
}

class RequiredMemberOfPackage : public testing::TestWithParam<PartCase>
{};

TEST_P(RequiredMemberOfPackage, MustStandInTheFile)
{
    Package package;
    EXPECT_EQ(read(package, without(Smallest, GetParam().part)), MemberMissing);
}

INSTANTIATE_TEST_SUITE_P(
    All, RequiredMemberOfPackage,
    testing::Values(PartCase{"PackageTypeInSpiteOfItsDefault", R"(<packageType v="Kestrix"/>)"},
                    PartCase{"Identifier", R"(<identifier v="p"/>)"},
                    PartCase{"FormatVersion", R"(<formatVersion v="1.1.0.201505"/>)"},
                    PartCase{"PlatformInSpiteOfItsDefault", R"(<platform v="1"/>)"},
                    PartCase{"Author", R"(<author v=""/>)"},
                    PartCase{"FileUid", R"(<fileUID v="{a}"/>)"},
                    PartCase{"VersionUid", R"(<versionUID v="7"/>)"},
                    PartCase{"Configurations",
                             R"(<configurations><name v="root"/><uid v="2"/><configuration/>)"
                             R"(</configurations>)"},
                    PartCase{"NestedConfigurations", "<configuration/>"},
                    PartCase{"Dependencies", "<dependencies/>"}, PartCase{"Content", "<content/>"}),
    caseName<PartCase>);

TEST(Package, LeavesAnEmptyDescriptionOut)
{
    const std::string xml = without(Smallest, R"(<formatVersion)", R"(<desc v=""/><formatVersion)");
    EXPECT_EQ(rewritten<Package>(xml), Smallest);
}

TEST(Package, WritesADescriptionAndAnUpdaterVersion)
{
    const std::string xml =
        without(Smallest, R"(<formatVersion v="1.1.0.201505"/>)",
                R"(<desc v="d"/><formatVersion v="1"/><updaterVersion v="2"/>)");
    EXPECT_EQ(rewritten<Package>(xml), xml);
}

TEST(Package, LosesAnUnknownMember)
{
    const std::string xml =
        without(Smallest, "<author", R"(<newer v="1"><deep><deeper/></deep></newer><author)");
    EXPECT_EQ(rewritten<Package>(xml), Smallest);
}

TEST(Package, ReadsItsMembersInAnyOrderAndWritesThemInItsOwn)
{
    const std::string head = R"(<packageType v="Kestrix"/>)";
    const std::string xml = without(without(Smallest, head), "</package>", head + "</package>");
    EXPECT_EQ(rewritten<Package>(xml), Smallest);
}

TEST(Package, HasATextWhereADependencyHasANumber)
{
    EXPECT_EQ(rewritten<Package>(Smallest), Smallest); // fileUID is "{a}"
    const std::string dependency = R"(<dependency><filename v="?himself"/><type v="package"/>)"
                                   R"(<fileUID v="{a}"/><versionUID v="0"/></dependency>)";
    Dependency read;
    EXPECT_THROW(TestSupport::read(read, dependency), boost::bad_lexical_cast);
}

TEST(Package, IsARootOfATreeOnlyInThePackagesList)
{
    EXPECT_FALSE(Package().isTreeRoot());
    EXPECT_TRUE(PackagesList().isTreeRoot());
}

// --- configurations and dependencies

TEST(Configurations, AlternateTheirElementNames)
{
    const std::string xml =
        R"(<configurations><name v="a"/><uid v="1"/><configuration><configurations><name v="b"/>)"
        R"(<uid v="2"/><desc v="x"/><platform v="3"/><configuration/></configurations>)"
        R"(</configuration></configurations>)";
    EXPECT_EQ(rewritten<Configurations>(xml), xml);
}

TEST(Configurations, HoldNoOtherElement)
{
    EXPECT_EQ(Configurations().configuration().createChild("configuration"), nullptr);
}

TEST(Dependency, LeavesAUidOfZeroOut)
{
    const std::string xml = R"(<dependency><filename v="?himself"/><type v="package"/>)"
                            R"(<fileUID v="5"/><versionUID v="6"/></dependency>)";
    EXPECT_EQ(rewritten<Dependency>(without(xml, "<type", R"(<uid v="0"/><type)")), xml);
}

TEST(Dependency, KeepsItsUid)
{
    const std::string xml = R"(<dependency><filename v="a.obl"/><uid v="1234"/><type v="package"/>)"
                            R"(<fileUID v="5"/><versionUID v="6"/></dependency>)";
    EXPECT_EQ(rewritten<Dependency>(xml), xml);
}

// --- content

TEST(Content, MakesAnItemPerElementName)
{
    const Package package;
    const auto make = [&](const char* name) { return package.content().createChild(name); };
    EXPECT_NE(dynamic_cast<Group*>(make("group").get()), nullptr);
    EXPECT_NE(dynamic_cast<Resource*>(make("resource").get()), nullptr);
    EXPECT_NE(dynamic_cast<Graph*>(make("graph").get()), nullptr);
    EXPECT_NE(dynamic_cast<Function*>(make("function").get()), nullptr);
}

TEST(Content, KnowsNamesExactlyOrNotAtAll)
{
    const Package package;
    EXPECT_EQ(package.content().createChild("Graph"), nullptr);
    EXPECT_EQ(package.content().createChild("graph "), nullptr);
    EXPECT_EQ(package.content().createChild("package"), nullptr);
    EXPECT_EQ(package.content().createChild(""), nullptr);
}

TEST(Content, IsTheSameInPackageGroupAndGraph)
{
    EXPECT_NE(Group().content().createChild("function"), nullptr);
    EXPECT_NE(Graph().content().createChild("group"), nullptr);
}

TEST(Content, KeepsItsItemsInTheOrderOfTheFile)
{
    const std::string xml = withContent(SmallestResource + SmallestGroup + SmallestResource);
    EXPECT_EQ(rewritten<Package>(xml), xml);
}

TEST(Content, NestsInGroups)
{
    const std::string inner =
        without(SmallestGroup, "<content/>", "<content>" + SmallestResource + "</content>");
    EXPECT_EQ(rewritten<Package>(withContent(inner)), withContent(inner));
}

TEST(Content, ThatNobodyKnowsEndsTheListEarly)
{
    // The rest of the list is read as members of the package, and what follows one level too high.
    const std::string xml = withContent("<unknown/>" + SmallestGroup);
    EXPECT_EQ(rewritten<Package>(xml), Smallest);
}

TEST(ContentInterface, LeadsToUidAndIdentifierOfEachItem)
{
    const auto package = readNew<Package>(withContent(SmallestGroup + SmallestResource));
    ASSERT_NE(package, nullptr);
    const auto* group = dynamic_cast<const ContentInterface*>(&package->content().at(0));
    const auto* resource = dynamic_cast<const ContentInterface*>(&package->content().at(1));
    EXPECT_EQ(group->uidAttribute().get(), 3u);
    EXPECT_EQ(group->identifierAttribute().get(), "g");
    EXPECT_EQ(resource->uidAttribute().get(), 4u);
    EXPECT_EQ(resource->identifierAttribute().get(), "r");
}

TEST(ContentInterface, BelongsToGraphsAndFunctionsToo)
{
    Graph graph;
    graph.uid().assign(8);
    Function function;
    function.identifier().assign("f");
    EXPECT_EQ(static_cast<const ContentInterface&>(graph).uidAttribute().get(), 8u);
    EXPECT_EQ(static_cast<const ContentInterface&>(function).identifierAttribute().get(), "f");
}

TEST(Group, WritesItsUidBeforeItsIdentifier)
{
    EXPECT_EQ(written(Group()), R"(<group><uid v="0"/><identifier v=""/><content/></group>)");
}

// --- resources

TEST(Resource, WritesItsIdentifierBeforeItsUid)
{
    EXPECT_EQ(rewritten<Resource>(SmallestResource), SmallestResource);
}

TEST(Resource, LeavesAnEmptySourceOut)
{
    const std::string xml = without(SmallestResource, "</resource>", "<source/></resource>");
    EXPECT_EQ(rewritten<Resource>(xml), SmallestResource);
}

TEST(Resource, LeavesEmptyAttributesAndOptionsOut)
{
    const std::string xml = without(SmallestResource, "</resource>",
                                    R"(<attributes><label v=""/></attributes>)"
                                    R"(<options/></resource>)");
    EXPECT_EQ(rewritten<Resource>(xml), SmallestResource);
}

TEST(Resource, KeepsItsOptionalMembers)
{
    const std::string xml =
        R"(<resource><identifier v="r"/><uid v="4"/><type v="1"/><format v="png"/>)"
        R"(<cookedFormat v="2"/><cookedQuality v="0.5"/><filepath v="a"/><lastModif v="l"/>)"
        R"(<checksum v="c"/><attributes><label v="x"/></attributes><source><externalcopy>)"
        R"(<filename v="f"/><lastModif v="m"/><checksum v="s"/></externalcopy></source><options>)"
        R"(<option><name v="n"/><value v="v"/></option></options></resource>)";
    EXPECT_EQ(rewritten<Resource>(xml), xml);
}

TEST(Resource, HasOneOfThreeSources)
{
    const Resource resource;
    const auto make = [&](const char* name) { return resource.source().createChild(name); };
    EXPECT_NE(dynamic_cast<ExternalCopy*>(make("externalcopy").get()), nullptr);
    EXPECT_NE(dynamic_cast<BinBoon*>(make("binboon").get()), nullptr);
    EXPECT_NE(dynamic_cast<BinEmbedded*>(make("binembedded").get()), nullptr);
    EXPECT_EQ(make("unknown"), nullptr);
}

TEST(Resource, MarksItsPathAndThatOfADependencyAndNoOther)
{
    EXPECT_EQ(Resource().filepath().getMeta().valueFlags, 1u);
    EXPECT_EQ(Dependency().filename().getMeta().valueFlags, 1u);
    EXPECT_EQ(ExternalCopy().filename().getMeta().valueFlags, 0u);
}

TEST(BinBoon, WritesItsFormatAlsoAtTheDefault)
{
    EXPECT_EQ(written(BinBoon()),
              R"(<binboon><offset v="0"/><datalength v="0"/><format v="zlib"/></binboon>)");
}

TEST(BinBoon, IsRefusedWithoutFormat)
{
    BinBoon source;
    EXPECT_EQ(read(source, R"(<binboon><offset v="0"/><datalength v="0"/></binboon>)"),
              MemberMissing);
}

TEST(BinBoon, HasItsCompressedLengthAsText)
{
    const std::string xml = R"(<binboon><offset v="1"/><datalength v="2"/><format v="none"/>)"
                            R"(<compressedlength v="12 bytes"/></binboon>)";
    EXPECT_EQ(rewritten<BinBoon>(xml), xml);
}

TEST(BinEmbedded, LeavesItsFormatOutAtTheDefault)
{
    EXPECT_EQ(rewritten<BinEmbedded>(R"(<binembedded><datalength v="1"/><format v="0"/>)"
                                     R"(<strdata v="x"/></binembedded>)"),
              R"(<binembedded><datalength v="1"/><strdata v="x"/></binembedded>)");
}

TEST(BinEmbedded, HasANumberAsItsFormat)
{
    BinEmbedded source;
    EXPECT_THROW(
        read(source, R"(<binembedded><datalength v="1"/><format v="zlib"/></binembedded>)"),
        boost::bad_lexical_cast);
}

// --- layouts

TEST(GUIObject, HasItsOptionsAsOneText)
{
    const std::string xml = R"(<GUIObject><type v="COMMENT"/><options v="a b"/><GUIName v="n"/>)"
                            R"(<uid v="1"/></GUIObject>)";
    EXPECT_EQ(rewritten<GUIObject>(xml), xml);
}

TEST(GUILayoutComp, LeavesTheDefaultDisplayOut)
{
    EXPECT_EQ(rewritten<GUILayoutComp>(
                  R"(<GUILayoutComp><display v="graph"/><groi v="1"/></GUILayoutComp>)"),
              R"(<GUILayoutComp><groi v="1"/></GUILayoutComp>)");
}

TEST(GUILayoutComp, WritesAnEmptyDisplay)
{
    const std::string xml = R"(<GUILayoutComp><display v=""/></GUILayoutComp>)";
    EXPECT_EQ(rewritten<GUILayoutComp>(xml), xml);
}

TEST(Options, ReadTheSameUnderEachName)
{
    const std::string items = R"(<option><name v="n"/><value v="v"/></option>)";
    Resource resource;
    const auto read = readNew<Options>("<options>" + items + "</options>");
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->front().value().get(), "v");
    EXPECT_TRUE(resource.options().getMeta().isOptional);
    EXPECT_FALSE(read->getMeta().isOptional);
}
