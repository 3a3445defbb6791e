// Compiled packages and assemblies as inputs and dependencies of the tool, good and damaged.
#include "support/assemblytext.h"
#include "support/damage.h"
#include "support/packagetext.h"
#include "support/peakbound.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <regex>

using TestSupport::aDescribedGraph;
using TestSupport::aDescription;
using TestSupport::anAssemblyBody;
using TestSupport::anAssemblyInArchive;
using TestSupport::aPackage;
using TestSupport::ArchiveFiles;
using TestSupport::Blocks;
using TestSupport::caseName;
using TestSupport::compressedArchive;
using TestSupport::DamageCase;
using TestSupport::hasArchiver;
using TestSupport::listOfEmptyFiles;
using TestSupport::manyAssemblies;
using TestSupport::Packing;
using TestSupport::repeated;
using TestSupport::replaced;
using TestSupport::runTool;
using TestSupport::storedArchive;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;
using TestSupport::withArchiveHeader;
using TestSupport::withChecksumsRepaired;
using TestSupport::withFlippedBit;
using TestSupport::withPackedList;

namespace {

constexpr long MaximumKilobytes = 1024L * 1024;

class Assemblies : public testing::Test
{
protected:
    ToolRun update(const std::string& name) const
    {
        return runTool(directory.path(), {"update", name});
    }
    // Writes the bytes of a file and runs the tool on it, with a limit to its memory.
    ToolRun updateLimited(const std::string& name, const std::string& bytes) const
    {
        directory.write(name, bytes);
#ifdef __SANITIZE_ADDRESS__ // reserves terabytes, and uses few of them
        const char* const script = R"(exec "$0" "$@")";
#else
        const char* const script = R"(ulimit -v 1048576 && exec "$0" "$@")";
#endif
        return Tool(directory.path())
            .at("/bin/sh")
            .run({"-c", script, Tool::executable(), "update", name});
    }
    void writePair(const std::string& body, const std::string& description) const
    {
        directory.write("a.oblasm", body);
        directory.write("a.xml", description);
    }
    void expectUpdated(const ToolRun& run, const std::string& input,
                       const std::string& output) const
    {
        EXPECT_EQ(run.exitCode, 0) << run;
        EXPECT_EQ(run.out, "Packages Loaded:\n    " + directory.path(input) +
                               "\nPackages Saved:\n    " + directory.path(output) + "\n");
        EXPECT_EQ(run.err, "");
    }
    void expectRefused(const ToolRun& run, const std::string& input) const
    {
        EXPECT_EQ(run.exitCode, 1) << run;
        EXPECT_EQ(run.signal, 0);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, "Cannot load: " + directory.path(input) +
                               "\nPackages cannot be correctly loaded\n");
        EXPECT_FALSE(directory.exists("a_updated.obl"));
        EXPECT_LT(run.peakKilobytes, MaximumKilobytes);
    }
    // The document without its declaration, a "#" in the place of uids that come from the clock.
    std::string written(const std::string& name) const
    {
        static const std::regex uid(
            R"re((<group>|<graph><identifier v="[^"]*"/>)<uid v="\d+"/>)re");
        const std::string text = std::regex_replace(directory.read(name), uid, R"($1<uid v="#"/>)");
        return text.substr(text.find("?>") + 2);
    }

    TemporaryDirectory directory;
};

const std::string Inputs =
    R"(<input identifier="scale" uid="5" type="4" default="3"><inputgui label="Scale" state="hidden">)"
    R"(<guislider min="1" max="9"/></inputgui></input>)";
const std::string Outputs = R"(<output identifier="color" uid="6" format="2"><channels>)"
                            R"(<channel components="RGBA" names="diffuse"/></channels></output>)";

std::string expectedPackage(const std::string& content)
{
    return R"(<package><packageType v="Kestrix"/><identifier v="a"/><formatVersion v="1.1.0.7049"/>)"
           R"(<updaterVersion v="1.1.0.7049"/><platform v="1"/><author v=""/>)"
           R"(<fileUID v="{00000000-0000-0000-0000-0000000000ab}"/><versionUID v="0"/>)"
           R"(<configurations><name v=""/><uid v="0"/><configuration/></configurations>)"
           R"(<dependencies/>)" +
           (content.empty() ? "<content/>" : "<content>" + content + "</content>") + "</package>\n";
}

const std::string ExpectedGraph =
    R"(<graph><identifier v="wood"/><uid v="#"/><paraminputs><paraminput>)"
    R"(<identifier v="scale"/><uid v="5"/><attributes><label v="Scale"/></attributes>)"
    R"(<type><value v="16"/></type><defaultValue><constantValueInt1><value v="3"/>)"
    R"(</constantValueInt1></defaultValue><defaultWidget><name v="slider"/><options>)"
    R"(<option><name v="min"/><value v="1"/></option><option><name v="max"/><value v="9"/></option>)"
    R"(</options></defaultWidget></paraminput></paraminputs><graphOutputs><graphoutput>)"
    R"(<identifier v="color"/><uid v="6"/><usages><usage><components v="RGBA"/>)"
    R"(<name v="diffuse"/></usage></usages></graphoutput></graphOutputs><compNodes/>)"
    R"(<baseParameters/><content/><root><rootOutputs><rootOutput><output v="6"/>)"
    R"(<format><value v="2"/></format><usertag v=""/></rootOutput></rootOutputs></root></graph>)";

const ArchiveFiles Wood{
    {"assemblies/content/7/wood.oblasm", anAssemblyBody()},
    {"assemblies/content/7/wood.xml",
     aDescription(aDescribedGraph("pkg://nature/wood?dependency=1", Inputs, Outputs))}};

// Good ones.

TEST_F(Assemblies, AnAssemblyBecomesAPackage)
{
    writePair(anAssemblyBody(), aDescription(aDescribedGraph("wood", Inputs, Outputs)));

    const ToolRun run = update("a.oblasm");

    expectUpdated(run, "a.oblasm", "a_updated.obl");
    EXPECT_EQ(written("a_updated.obl"), expectedPackage(ExpectedGraph));
    EXPECT_EQ(directory.files(), "a.oblasm a.xml a_updated.obl");
}

TEST_F(Assemblies, AnArchiveBecomesAPackage)
{
    directory.write("a.oblar", storedArchive(Wood));

    const ToolRun run = update("a.oblar");

    expectUpdated(run, "a.oblar", "a_updated.obl");
    EXPECT_EQ(written("a_updated.obl"),
              expectedPackage(R"(<group><uid v="#"/><identifier v="nature"/><content>)" +
                              ExpectedGraph + "</content></group>"));
    EXPECT_EQ(directory.files(), "a.oblar a_updated.obl");
}

TEST_F(Assemblies, ACompressedArchiveBecomesTheSamePackage)
{
    if (!hasArchiver())
        GTEST_SKIP() << "no archiver";
    directory.write("a.oblar", storedArchive(Wood));
    ASSERT_EQ(update("a.oblar").exitCode, 0);
    const std::string package = written("a_updated.obl");
    directory.write("a.oblar", compressedArchive(Wood, {}));

    const ToolRun run = update("a.oblar");

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(written("a_updated.obl"), package);
}

TEST_F(Assemblies, TheSameUnderTheCLocale)
{
    directory.write("a.oblar", storedArchive(Wood + ArchiveFiles{{"gr\xf6\xdf", "x"}}));

    const ToolRun run =
        Tool(directory.path()).withEnvironment("LC_ALL", "C").run({"update", "a.oblar"});

    EXPECT_EQ(run.exitCode, 0) << run;
}

TEST_F(Assemblies, ThePackageStaysAsItIs)
{
    directory.write("a.oblar", storedArchive(Wood));
    ASSERT_EQ(update("a.oblar").exitCode, 0);

    const ToolRun run = update("a_updated.obl");

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(directory.read("a_updated_updated.obl"), directory.read("a_updated.obl"));
}

TEST_F(Assemblies, AnArchiveWithoutFilesIsAnEmptyPackage)
{
    directory.write("a.oblar", storedArchive({}));

    const ToolRun run = update("a.oblar");

    expectUpdated(run, "a.oblar", "a_updated.obl");
    EXPECT_EQ(written("a_updated.obl"),
              replaced(expectedPackage(""), "{00000000-0000-0000-0000-0000000000ab}", ""));
}

TEST_F(Assemblies, AnArchiveOfAuthoringFilesAloneIsAnEmptyPackage)
{
    directory.write("a.oblar", storedArchive({{"authoring/content/7/x", "x"}}));

    const ToolRun run = update("a.oblar");

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_NE(written("a_updated.obl").find("<content/>"), std::string::npos);
}

TEST_F(Assemblies, AThousandAssembliesBecomeOnePackage)
{
    directory.write("a.oblar", storedArchive(manyAssemblies(1000), Blocks::OneForAll));

    const ToolRun run = update("a.oblar");

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_NE(directory.read("a_updated.obl").find(R"(<identifier v="g999"/>)"), std::string::npos);
}

// Far more in all than one description may be.
ArchiveFiles largeAssemblies()
{
    ArchiveFiles files = manyAssemblies(3);
    for (std::size_t i = 1; i < files.size(); i += 2)
        files[i].bytes += std::string(std::size_t{30} << 20, ' ');
    return files;
}

class LargeArchive : public Assemblies, public testing::WithParamInterface<bool>
{
protected:
    static ArchiveFiles files()
    {
        ArchiveFiles all = largeAssemblies();
        std::stable_partition(all.begin(), all.end(), [](const TestSupport::ArchiveFile& file) {
            return (file.name.back() == 'l') == GetParam(); // of "xml"
        });
        return all;
    }
};

TEST_P(LargeArchive, TakesTheMemoryOfOneDescription)
{
    directory.write("a.oblar", storedArchive(files()));

    const ToolRun run = update("a.oblar");

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_NE(directory.read("a_updated.obl").find(R"(<identifier v="g2"/>)"), std::string::npos);
    EXPECT_LT(run.peakKilobytes, TestSupport::peakBound(200L * 1024));
}

INSTANTIATE_TEST_SUITE_P(Orders, LargeArchive, testing::Bool(),
                         [](const testing::TestParamInfo<bool>& isFirst) {
                             return isFirst.param ? "DescriptionsFirst" : "BodiesFirst";
                         });

class AssemblyDependency : public Assemblies, public testing::WithParamInterface<const char*>
{};

TEST_P(AssemblyDependency, IsLoadedAndSavedAsAPackage)
{
    const std::string name = GetParam();
    writePair(anAssemblyBody(), aDescription(aDescribedGraph("wood")));
    directory.write("a.oblar", storedArchive(Wood));
    directory.write("p.obl", aPackage().dependingOn(name, 7).text());

    const ToolRun run = update("p.obl");

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.out, "Packages Loaded:\n    " + directory.path("p.obl") + "\n    " +
                           directory.path(name) + "\nPackages Saved:\n    " +
                           directory.path("p_updated.obl") + "\n    " +
                           directory.path("a_updated.obl") + "\n");
    EXPECT_NE(directory.read("p_updated.obl").find("<filename v=\"" + name + "\"/>"),
              std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Kinds, AssemblyDependency, testing::Values("a.oblar", "a.oblasm"),
                         [](const testing::TestParamInfo<const char*>& name) {
                             return std::string(name.param).substr(2);
                         });

TEST_F(Assemblies, ABadDependencyIsRefused)
{
    directory.write("a.oblar", "folly");
    directory.write("p.obl", aPackage().dependingOn("a.oblar", 7).text());

    const ToolRun run = update("p.obl");

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(run.err, "Cannot load dependency: " + directory.path("a.oblar") +
                           "\nPackages cannot be correctly loaded\n");
    EXPECT_EQ(directory.files(), "a.oblar p.obl");
}

// Bad pairs of files.

TEST_F(Assemblies, AnAssemblyWithoutDescriptionIsRefused)
{
    directory.write("a.oblasm", anAssemblyBody());

    expectRefused(update("a.oblasm"), "a.oblasm");
}

struct PairCase
{
    const char* name;
    std::string body;
    std::string description;
};

std::ostream& operator<<(std::ostream& stream, const PairCase& c)
{
    return stream << c.name;
}

class BadAssembly : public Assemblies, public testing::WithParamInterface<PairCase>
{};

TEST_P(BadAssembly, IsRefused)
{
    directory.write("a.xml", GetParam().description);

    const ToolRun run = updateLimited("a.oblasm", GetParam().body);

    expectRefused(run, "a.oblasm");
}

INSTANTIATE_TEST_SUITE_P(
    Pairs, BadAssembly,
    testing::Values(PairCase{"OtherUid", anAssemblyBody(43), aDescription("")},
                    PairCase{"EmptyBody", "", aDescription("")},
                    PairCase{"ShortBody", anAssemblyBody().substr(0, 15), aDescription("")},
                    PairCase{"OtherMagic", "x" + anAssemblyBody(), aDescription("")},
                    PairCase{"EmptyDescription", anAssemblyBody(), ""},
                    PairCase{"NoGraphs", anAssemblyBody(), R"(<obldescription asmuid="42"/>)"},
                    PairCase{"BadGraph", anAssemblyBody(),
                             aDescription(aDescribedGraph("a", "<input/>"))},
                    PairCase{"GroupsNestedTooDeep", anAssemblyBody(),
                             aDescription(aDescribedGraph(repeated("a/", 200000)))}),
    caseName<PairCase>);

class BrokenDescription : public Assemblies, public testing::WithParamInterface<DamageCase>
{};

TEST_P(BrokenDescription, IsRefused)
{
    directory.write("a.xml", GetParam().bytes());

    const ToolRun run = updateLimited("a.oblasm", anAssemblyBody());

    expectRefused(run, "a.oblasm");
}

INSTANTIATE_TEST_SUITE_P(Forms, BrokenDescription,
                         testing::ValuesIn(TestSupport::brokenDescriptions()),
                         caseName<DamageCase>);

// Bad archives.

class BadArchive : public Assemblies, public testing::WithParamInterface<DamageCase>
{};

TEST_P(BadArchive, IsRefused)
{
    const ToolRun run = updateLimited("a.oblar", GetParam().bytes());

    expectRefused(run, "a.oblar");
}

std::string small()
{
    return storedArchive(anAssemblyInArchive("7", "wood", "wood"));
}

std::string withFile(const std::string& name)
{
    return storedArchive(Wood + ArchiveFiles{{name, "x"}});
}

std::string announcing(std::uint64_t size)
{
    return storedArchive({{Wood[0].name, "x", false, size}, Wood[1]});
}

INSTANTIATE_TEST_SUITE_P(Forms, BadArchive, testing::ValuesIn(TestSupport::noArchives()),
                         caseName<DamageCase>);
INSTANTIATE_TEST_SUITE_P(Lists, BadArchive, testing::ValuesIn(TestSupport::overlongLists()),
                         caseName<DamageCase>);
INSTANTIATE_TEST_SUITE_P(
    Files, BadArchive,
    testing::Values(
        DamageCase{"NoDescription", [] { return storedArchive({Wood[0]}); }},
        DamageCase{"WrongPair",
                   [] {
                       return storedArchive({{Wood[0].name, anAssemblyBody(1)}, Wood[1]});
                   }},
        DamageCase{"WrongChecksum",
                   [] {
                       return storedArchive({Wood[0], {Wood[1].name, Wood[1].bytes, false, {}, 1}});
                   }},
        DamageCase{"NameTwice", [] { return storedArchive(Wood + Wood); }},
        DamageCase{"NameLeadsOut", [] { return withFile("../x"); }},
        DamageCase{"NameIsAbsolute", [] { return withFile("/tmp/x"); }},
        DamageCase{"AnnouncesTooMuch", [] { return announcing((1ull << 30) + 1); }},
        DamageCase{"AnnouncesFarTooMuch", [] { return announcing(1ull << 62); }},
        DamageCase{"AnnouncesLessThanNothing", [] { return announcing(1ull << 63); }},
        DamageCase{"AnnouncesMoreThanItHas", [] { return announcing(1ull << 29); }}),
    caseName<DamageCase>);

// The list of files would take more than a gigabyte.
TEST_F(Assemblies, ASmallArchiveOfMillionsOfFilesIsRefused)
{
    if (!hasArchiver())
        GTEST_SKIP() << "no archiver";
    const std::string list = listOfEmptyFiles(12000000);
    directory.write("a.oblar",
                    withPackedList(withArchiveHeader(storedArchive({}), list), Packing::Lzma));

    expectRefused(update("a.oblar"), "a.oblar");
}

TEST_F(Assemblies, ADirectoryIsRefused)
{
    directory.makeDirectory("a.oblar");
    directory.makeDirectory("a.oblasm");

    expectRefused(update("a.oblar"), "a.oblar");
    expectRefused(update("a.oblasm"), "a.oblasm");
}

TEST_F(Assemblies, EndingsInCapitalsAreRefused)
{
    directory.write("a.OBLAR", small());

    expectRefused(update("a.OBLAR"), "a.OBLAR");
}

TEST_F(Assemblies, AFileThatMayNotBeReadIsRefused)
{
    directory.write("a.oblar", small());
    directory.setMode("a.oblar", 0);

    const ToolRun run = Tool(directory.path()).withoutRootRights().run({"update", "a.oblar"});

    expectRefused(run, "a.oblar");
}

// Damage at some places; the tests of the reader try them all.

class CutArchive : public Assemblies, public testing::WithParamInterface<int>
{};

TEST_P(CutArchive, IsRefused)
{
    const ToolRun run =
        updateLimited("a.oblar", small().substr(0, static_cast<std::size_t>(GetParam())));

    expectRefused(run, "a.oblar");
}

INSTANTIATE_TEST_SUITE_P(Places, CutArchive,
                         testing::Range(0, static_cast<int>(small().size()) - 1, 13));
INSTANTIATE_TEST_SUITE_P(LastByte, CutArchive,
                         testing::Values(static_cast<int>(small().size()) - 1));

class FlippedArchive : public Assemblies, public testing::WithParamInterface<std::size_t>
{
protected:
    // Another bit of each byte.
    static std::string archive()
    {
        return withFlippedBit(small(), GetParam() * 8 + GetParam() % 8);
    }
};

TEST_P(FlippedArchive, IsRefused)
{
    const ToolRun run = updateLimited("a.oblar", archive());

    expectRefused(run, "a.oblar");
}

TEST_P(FlippedArchive, WithRightChecksumsEndsInOrder)
{
    const ToolRun run = updateLimited("a.oblar", withChecksumsRepaired(archive()));

    EXPECT_EQ(run.signal, 0) << run;
    EXPECT_EQ(run.exitCode == 0, directory.exists("a_updated.obl")) << run;
    EXPECT_LT(run.peakKilobytes, MaximumKilobytes);
}

INSTANTIATE_TEST_SUITE_P(Places, FlippedArchive,
                         testing::Range(std::size_t{8}, small().size(), std::size_t{7}));

} // namespace
