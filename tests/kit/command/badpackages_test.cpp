// Files that are no packages: ksx names them with a reason and goes on, whatever they hold.
#include "support/bytes.h"
#include "support/damage.h"
#include "support/packagetext.h"
#include "support/paths.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <sstream>
#include <sys/stat.h>

using TestSupport::aGraphWithInstance;
using TestSupport::aGroup;
using TestSupport::aPackage;
using TestSupport::Arguments;
using TestSupport::caseName;
using TestSupport::DamageCase;
using TestSupport::entityBomb;
using TestSupport::ksxPath;
using TestSupport::manyAttributes;
using TestSupport::nestedElements;
using TestSupport::nestedGroups;
using TestSupport::pick;
using TestSupport::replaced;
using TestSupport::seededRandom;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;
using TestSupport::withFlippedBit;

namespace {

constexpr long MaximumKilobytes = 1024L * 1024;

using Commands = std::vector<Arguments>;

// Commands that search folders, with "@" for the name of a package or a folder.
const Commands& searchingCommands()
{
    static const Commands all = {{"info", "@"},
                                 {"info", "--json", "@"},
                                 {"info", "--brief", "@"},
                                 {"info", "--brief", "--json", "@"},
                                 {"check", "@"},
                                 {"check", "--json", "@"},
                                 {"preview", "@"},
                                 {"preview", "--json", "@"},
                                 {"draw", "-o", "out", "@"},
                                 {"draw", "--html", "report", "@"}};
    return all;
}

// The same, and commands that read packages alone.
const Commands& readingCommands()
{
    static const Commands all = [] {
        Commands commands = searchingCommands();
        commands.insert(commands.end(),
                        {{"diff", "@", "@"},
                         {"diff", "--json", "--layout", "@", "@"},
                         {"diff", "--text", "@"},
                         {"merge", "@", "@", "@", "-o", "merged.obl"},
                         {"merge", "--json", "--ours", "@", "@", "@", "-o", "merged.obl"}});
        return commands;
    }();
    return all;
}

class BadPackages : public testing::Test
{
protected:
    ToolRun run(Arguments arguments, const std::string& operand) const
    {
        std::replace(arguments.begin(), arguments.end(), std::string("@"), operand);
        return Tool(directory.path()).at(ksxPath()).withoutRootRights().run(arguments);
    }
    // In each command.
    void expectRefused(const std::string& operand, const std::string& error,
                       const Commands& commands = readingCommands()) const
    {
        for (const Arguments& command : commands) {
            const ToolRun found = run(command, operand);
            EXPECT_EQ(found.exitCode, 2) << found;
            EXPECT_EQ(found.err.rfind("Error! " + error, 0), 0U) << found;
            EXPECT_LT(found.peakKilobytes, MaximumKilobytes);
        }
    }
    void expectOrderly(const std::string& operand) const
    {
        for (const Arguments& command : readingCommands()) {
            const ToolRun found = run(command, operand);
            EXPECT_TRUE(found.exitCode >= 0 && found.exitCode <= 2) << found;
            EXPECT_EQ(found.signal, 0) << found;
            EXPECT_LT(found.peakKilobytes, MaximumKilobytes);
        }
    }
    void allowAll() const { directory.setMode("", 0777); }

    TemporaryDirectory directory;
};

std::string sound()
{
    return aPackage()
        .dependingOn("b.obl", 5)
        .containing(aGroup("g", aGraphWithInstance("i", "pkg://g?dependency=5")))
        .text();
}

std::size_t linesWith(const std::string& words, const std::string& text)
{
    std::istringstream lines(text);
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line);)
        count += line.find(words) != std::string::npos ? 1 : 0;
    return count;
}

// Writes as many files, each made of a number.
template <class Make>
void writeMany(const TemporaryDirectory& directory, int count, const Make& make)
{
    for (int i = 0; i < count; ++i)
        directory.write("many/" + std::to_string(i) + ".obl", make(i));
}

} // namespace

TEST_F(BadPackages, AFolderNamedLikeAPackageIsSearched)
{
    allowAll();
    directory.makeDirectory("a.obl");

    EXPECT_EQ(run({"info", "@"}, "a.obl").exitCode, 0);
}

TEST_F(BadPackages, APipeIsRefusedWithoutWaiting)
{
    allowAll();
    ASSERT_EQ(mkfifo(directory.path("a.obl").c_str(), 0666), 0);

    expectRefused("a.obl", "a.obl: it cannot be opened");
}

TEST_F(BadPackages, APipeInAFolderIsRefusedWithoutWaiting)
{
    allowAll();
    ASSERT_EQ(mkfifo(directory.path("a.obl").c_str(), 0666), 0);

    expectRefused(".", "./a.obl: it cannot be opened", searchingCommands());
}

TEST_F(BadPackages, AFileThatMayNotBeReadIsRefused)
{
    allowAll();
    directory.write("a.obl", sound());
    directory.setMode("a.obl", 0);

    expectRefused("a.obl", "a.obl: it cannot be opened");
}

TEST_F(BadPackages, AFolderThatMayNotBeReadIsRefused)
{
    allowAll();
    directory.makeDirectory("closed");
    directory.setMode("closed", 0);

    expectRefused("closed", "closed: it cannot be searched: Permission denied",
                  searchingCommands());
}

TEST_F(BadPackages, ALinkToItselfIsRefused)
{
    allowAll();
    directory.makeLink("a.obl", "a.obl");

    expectRefused("a.obl", "a.obl: ");
}

TEST_F(BadPackages, APackageThatIsCutAnywhereIsToldAndLeavesTheOthers)
{
    allowAll();
    const std::string text = sound();
    writeMany(directory, static_cast<int>(text.size()) / 5,
              [&](int i) { return text.substr(0, static_cast<std::size_t>(i) * 5); });

    const ToolRun listed = run({"info", "@"}, "many");
    const ToolRun checked = run({"check", "@"}, "many");

    EXPECT_EQ(listed.exitCode, 2) << listed;
    EXPECT_EQ(linesWith("it is no sound document", listed.err), text.size() / 5);
    EXPECT_EQ(checked.exitCode, 1) << checked;
    EXPECT_EQ(linesWith("[unreadable-package]", checked.out), text.size() / 5);
}

TEST_F(BadPackages, APackageWithAnyBitFlippedEndsInOrder)
{
    allowAll();
    std::mt19937 random = seededRandom(15);
    const std::string text = sound();
    writeMany(directory, 300, [&](int) {
        return withFlippedBit(text, pick<std::size_t>(random, 0, text.size() * 8 - 1));
    });

    expectOrderly("many");
}

namespace {

class HostilePackage : public BadPackages, public testing::WithParamInterface<DamageCase>
{};

} // namespace

TEST_P(HostilePackage, EndsInOrderWithLittleMemory)
{
    allowAll();
    directory.write("a.obl", GetParam().bytes());

    expectOrderly("a.obl");
}

INSTANTIATE_TEST_SUITE_P(
    Forms, HostilePackage,
    testing::Values(
        DamageCase{"NestedGroups", [] { return aPackage().containing(nestedGroups(2000)).text(); }},
        DamageCase{"NestedUnknowns",
                   [] {
                       return replaced(sound(), "<content>",
                                       nestedElements("x", 100000) + "<content>");
                   }},
        DamageCase{"ManyAttributes",
                   [] {
                       return replaced(sound(), "<package>",
                                       "<package " + manyAttributes(100000) + ">");
                   }},
        DamageCase{"EntityBomb",
                   [] {
                       return replaced(replaced(sound(), "v=\"me\"", "v=\"&e;\""), "<package>",
                                       entityBomb("package") + "<package>");
                   }},
        DamageCase{
            "LongIdentifiers",
            [] {
                const std::string name(1000000, 'x');
                return aPackage().containing(aGroup(name, aGroup(name, aGroup(name)))).text();
            }}),
    caseName<DamageCase>);
