#include "core/programoptions.h"
#include "support/shelfcases.h"

#include <boost/program_options.hpp>
#include <gtest/gtest.h>
#include <iostream>
#include <sstream>
#include <stdexcept>

using Orv::Core::ProgramCommand;
using Orv::Core::ProgramOptions;
using TestSupport::caseName;

namespace po = boost::program_options;

namespace {

using Arguments = std::vector<std::string>;

// Keeps what is written to a standard stream.
class CapturedStream
{
public:
    explicit CapturedStream(std::ostream& stream)
        : m_stream(stream), m_former(stream.rdbuf(m_text.rdbuf()))
    {}
    ~CapturedStream() { m_stream.rdbuf(m_former); }
    CapturedStream(const CapturedStream&) = delete;
    CapturedStream& operator=(const CapturedStream&) = delete;
    std::string text() const { return m_text.str(); }

private:
    std::ostringstream m_text;
    std::ostream& m_stream;
    std::streambuf* m_former;
};

// Copies a file whose name is given with --output-name, to as many places as are named; the number
// of places is its exit code, unless `exitCode` says otherwise.
class CopyCommand final : public ProgramCommand
{
public:
    explicit CopyCommand(const QString& name) : ProgramCommand(name)
    {
        po::options_description group("I/O options of " + name.toStdString(), 80, 70);
        group.add_options()("output-name", po::value<std::string>(), "Name");
        group.add_options()("inputs", po::value<Arguments>(), "Places");
        group.add_options()("depth", po::value<int>(), "Depth");
        options().add(group);
    }

    int execute(const ParsedOptions& parsedOptions, const VariablesMap& variables) override
    {
        ++runs;
        optionsSeen = parsedOptions.options.size();
        if (variables.count("output-name") != 0)
            outputName = variables["output-name"].as<std::string>();
        if (variables.count("inputs") != 0)
            inputs = variables["inputs"].as<Arguments>();
        if (throws)
            throw std::runtime_error("copying failed");
        return exitCode;
    }
    int run(const Arguments& arguments) override
    {
        tokens = arguments;
        return ProgramCommand::run(arguments);
    }
    void declarePositional(PositionalDescription& positional) override
    {
        positional.add("inputs", -1);
    }

    int runs = 0;
    int exitCode = 0;
    bool throws = false;
    std::size_t optionsSeen = 0;
    std::string outputName;
    Arguments inputs;
    Arguments tokens;
};

// A command without options and positional tokens.
class BareCommand final : public ProgramCommand
{
public:
    using ProgramCommand::ProgramCommand;
    int execute(const ParsedOptions&, const VariablesMap&) override { return 5; }
};

// Throws while its tokens are parsed.
template <class Error>
class FaultyCommand final : public ProgramCommand
{
public:
    explicit FaultyCommand(const Error& error) : ProgramCommand("faulty"), m_error(error) {}
    void declarePositional(PositionalDescription&) override { throw Error(m_error); }
    int execute(const ParsedOptions&, const VariablesMap&) override { return 0; }

private:
    Error m_error;
};

struct Outcome
{
    int exitCode;
    std::string out;
    std::string err;
};

Outcome runTool(ProgramOptions& tool, const Arguments& arguments)
{
    std::vector<const char*> argv{"/somewhere/tool"};
    for (const std::string& argument : arguments)
        argv.push_back(argument.c_str());
    const CapturedStream out(std::cout);
    const CapturedStream err(std::cerr);
    const int exitCode = tool.run(static_cast<int>(argv.size()), argv.data());
    return {exitCode, out.text(), err.text()};
}

const std::string GlobalGroup = "global options:\n"
                                "  --help arg\n"
                                "          Display help on availables commands.\n"
                                "          If no argument is given, global help is displayed\n";

const std::string GlobalHelp = "\n"
                               "Usage: tool [--help] <command> [<args>]\n"
                               "\n"
                               "Available commands are: \n"
                               "   update \n"
                               "   specialization \n"
                               "   graph-parameters-editor \n"
                               "\n"
                               "See 'tool --help <command>' for more information on a specific "
                               "command.\n"
                               "\n" +
                               GlobalGroup + "\n";

const std::string LonelyHelp = "\nUsage: tool [<args>]\n\n" + GlobalGroup + "\n";

std::string groupOf(const std::string& command)
{
    return "\nI/O options of " + command +
           ":\n"
           "  --output-name arg     Name\n"
           "  --inputs arg          Places\n"
           "  --depth arg           Depth\n";
}

// A tool with three commands.
class ProgramOptionsDispatch : public testing::Test
{
protected:
    ProgramOptionsDispatch() : tool("tool", 80, 70)
    {
        update = add("update");
        specialization = add("specialization");
        editor = add("graph-parameters-editor");
    }
    CopyCommand* add(const QString& name)
    {
        auto command = std::make_unique<CopyCommand>(name);
        CopyCommand* added = command.get();
        tool.addCommand(std::move(command));
        return added;
    }
    int totalRuns() const { return update->runs + specialization->runs + editor->runs; }

    ProgramOptions tool;
    CopyCommand* update;
    CopyCommand* specialization;
    CopyCommand* editor;
};

// A tool with one command.
class ProgramOptionsLonely : public testing::Test
{
protected:
    ProgramOptionsLonely() : tool("tool", 80, 70)
    {
        auto added = std::make_unique<CopyCommand>("update");
        command = added.get();
        tool.addCommand(std::move(added));
    }
    ProgramOptions tool;
    CopyCommand* command;
};

} // namespace

// Texts and exit codes of all that ends before a command runs.

struct DispatchCase
{
    const char* name;
    Arguments arguments;
    int exitCode;
    std::string out;
    std::string err;
};

std::ostream& operator<<(std::ostream& stream, const DispatchCase& c)
{
    return stream << c.name;
}

class ProgramOptionsEnd : public ProgramOptionsDispatch,
                          public testing::WithParamInterface<DispatchCase>
{};

TEST_P(ProgramOptionsEnd, TellsWhyNoCommandRan)
{
    const Outcome outcome = runTool(tool, GetParam().arguments);
    EXPECT_EQ(outcome.exitCode, GetParam().exitCode);
    EXPECT_EQ(outcome.out, GetParam().out);
    EXPECT_EQ(outcome.err, GetParam().err);
    EXPECT_EQ(totalRuns(), 0);
}

const std::string NoCommand = "Error: no command specified!\n";

INSTANTIATE_TEST_SUITE_P(
    Forms, ProgramOptionsEnd,
    testing::Values(
        DispatchCase{"NoArgument", {}, 0, GlobalHelp, ""},
        DispatchCase{"OnlyUnknownOptions", {"--nonsense", "-y"}, 0, GlobalHelp, ""},
        DispatchCase{"EmptyHelp", {"--help"}, 0, GlobalHelp, ""},
        DispatchCase{"AbbreviatedHelp", {"--he"}, 0, GlobalHelp, ""},
        DispatchCase{"HelpTwice", {"--help", "--help"}, 0, GlobalHelp, ""},
        DispatchCase{"HelpBeforeCommand", {"--help", "update"}, 0, GlobalHelp, ""},
        DispatchCase{"HelpBeforeUnknownWord", {"--help", "nonsense"}, 0, GlobalHelp, ""},
        DispatchCase{"AbbreviatedHelpBeforeCommand", {"--hel", "update", "x"}, 0, GlobalHelp, ""},
        DispatchCase{"HelpBehindCommand", {"update", "--help"}, 0, GlobalHelp, ""},
        DispatchCase{"HelpAmidArguments", {"update", "--help", "x"}, 0, GlobalHelp, ""},
        DispatchCase{"HelpBesideUnknownOption", {"--nonsense", "--help"}, 0, GlobalHelp, ""},
        DispatchCase{"HelpOnCommand", {"--help=update"}, 0, groupOf("update"), ""},
        DispatchCase{
            "HelpOnCommandInCapitals", {"--help=SPECIALIZATION"}, 0, groupOf("specialization"), ""},
        DispatchCase{"AbbreviatedHelpOnCommand", {"--hel=update"}, 0, groupOf("update"), ""},
        DispatchCase{"HelpOnCommandBehindCommand",
                     {"specialization", "--help=update"},
                     0,
                     groupOf("update"),
                     ""},
        DispatchCase{"HelpOnNoCommand", {"--help=nonsense"}, 1, "", "Unknow command nonsense!\n"},
        DispatchCase{
            "HelpOnBytesOfNoText", {"--help=\xE9\xFF"}, 1, "", "Unknow command \xE9\xFF!\n"},
        DispatchCase{"HelpOnNothing",
                     {"--help="},
                     1,
                     "",
                     "Parsing Error: the argument for option '--help' should follow immediately "
                     "after the equal sign\n\n"},
        DispatchCase{"CommandTwice",
                     {"--command", "update", "update"},
                     1,
                     "",
                     "Parsing Error: option '--command' cannot be specified more than once\n\n"},
        DispatchCase{
            "OptionBeforeCommand", {"--nonsense", "update", "x"}, 1, GlobalHelp, NoCommand},
        DispatchCase{
            "CommandOptionBeforeCommand", {"--output-name=o", "update"}, 1, GlobalHelp, NoCommand},
        DispatchCase{"UnknownCommand", {"upgrade", "x"}, 1, "", "Error: Invalid command!\n"},
        DispatchCase{"BeginOfCommand", {"up"}, 1, "", "Error: Invalid command!\n"},
        DispatchCase{"EmptyCommand", {""}, 1, "", "Error: Invalid command!\n"},
        DispatchCase{"BadOptionOfCommand",
                     {"update", "--nonsense"},
                     1,
                     "",
                     "Parsing Error: unrecognised option '--nonsense'\n\n"},
        DispatchCase{"BadValueOfCommand",
                     {"update", "--depth=deep"},
                     1,
                     "",
                     "Parsing Error: the argument ('deep') for option '--depth' is invalid\n\n"},
        DispatchCase{"OptionOfCommandTwice",
                     {"update", "--output-name=a", "--output-name=b"},
                     1,
                     "",
                     "Parsing Error: option '--output-name' cannot be specified more than "
                     "once\n\n"}),
    caseName<DispatchCase>);

// Choosing and running a command.

TEST_F(ProgramOptionsDispatch, TheNamedCommandRunsAlone)
{
    runTool(tool, {"specialization", "x"});
    EXPECT_EQ(specialization->runs, 1);
    EXPECT_EQ(totalRuns(), 1);
}

TEST_F(ProgramOptionsDispatch, TheExitCodeIsThatOfTheCommand)
{
    update->exitCode = 3;
    EXPECT_EQ(runTool(tool, {"update", "x"}).exitCode, 3);
}

TEST_F(ProgramOptionsDispatch, NothingIsPrintedAroundACommand)
{
    const Outcome outcome = runTool(tool, {"update", "x"});
    EXPECT_EQ(outcome.out + outcome.err, "");
}

TEST_F(ProgramOptionsDispatch, CaseOfTheNameDoesNotMatter)
{
    runTool(tool, {"UPDATE", "x"});
    EXPECT_EQ(update->runs, 1);
}

TEST_F(ProgramOptionsDispatch, TheFirstCommandOfANameWins)
{
    add("Update");
    EXPECT_EQ(tool.findCommand("uPDATE"), update);
}

TEST_F(ProgramOptionsDispatch, AnUnknownNameFindsNoCommand)
{
    EXPECT_EQ(tool.findCommand("updat"), nullptr);
}

TEST_F(ProgramOptionsDispatch, TokensBehindTheNameReachTheCommandInOrder)
{
    const Arguments tokens{"b.obl", "--output-name", "name", "a.obl", "--depth=2", "-"};
    Arguments all{"update"};
    all.insert(all.end(), tokens.begin(), tokens.end());
    runTool(tool, all);
    EXPECT_EQ(update->tokens, tokens);
}

TEST_F(ProgramOptionsDispatch, TokensOfAnUnknownFormReachTheCommandUnchanged)
{
    runTool(tool, {"update", "--nonsense=1 2", "-x", "--", "--help"});
    EXPECT_EQ(update->tokens, (Arguments{"--nonsense=1 2", "-x", "--help"}));
}

TEST_F(ProgramOptionsDispatch, BytesThatAreNoTextReachTheCommandUnchanged)
{
    runTool(tool, {"update", "\xE9t\xC3\xA9.obl"});
    EXPECT_EQ(update->inputs, (Arguments{"\xE9t\xC3\xA9.obl"}));
}

TEST_F(ProgramOptionsDispatch, ExceptionsOfACommandPassThrough)
{
    update->throws = true;
    EXPECT_THROW(runTool(tool, {"update", "x"}), std::runtime_error);
}

// One command alone.

TEST_F(ProgramOptionsLonely, NeedsNoNameOnTheCommandLine)
{
    runTool(tool, {"update", "x"});
    EXPECT_EQ(command->inputs, (Arguments{"update", "x"}));
}

TEST_F(ProgramOptionsLonely, MayBeginWithAnOption)
{
    runTool(tool, {"--output-name=o", "x"});
    EXPECT_EQ(command->outputName, "o");
}

TEST_F(ProgramOptionsLonely, EmptyHelpPrintsTheCommandsOptionsToo)
{
    EXPECT_EQ(runTool(tool, {"--help"}).out, LonelyHelp + groupOf("update"));
}

TEST_F(ProgramOptionsLonely, NoArgumentPrintsTheGlobalHelpAlone)
{
    const Outcome outcome = runTool(tool, {});
    EXPECT_EQ(outcome.out, LonelyHelp);
    EXPECT_EQ(outcome.exitCode, 0);
}

TEST(ProgramOptionsUsage, OfAToolWithoutCommandsNamesNone)
{
    ProgramOptions tool("tool", 80, 70);
    EXPECT_EQ(runTool(tool, {"--help"}).out, LonelyHelp);
}

TEST(ProgramOptionsUsage, TheProgramsNameIsNotReadAsAPlaceholder)
{
    ProgramOptions tool("to%2ol", 80, 70);
    EXPECT_EQ(runTool(tool, {}).out.substr(0, 24), "\nUsage: to%2ol [<args>]\n");
}

TEST(ProgramOptionsUsage, NoArgumentAtAllIsAnEmptyCommandLine)
{
    ProgramOptions tool("tool", 80, 70);
    const CapturedStream out(std::cout);
    EXPECT_EQ(tool.run(0, nullptr), 0);
}

// The points of extension.

namespace {

class VersionedTool final : public ProgramOptions
{
public:
    VersionedTool() : ProgramOptions("tool", 80, 70)
    {
        globalOptions().add_options()("version", "Version");
        addCommand(std::make_unique<BareCommand>("first"));
        addCommand(std::make_unique<BareCommand>("second"));
    }
    std::string announced;

protected:
    int processGlobalOptions(const ParsedOptions&, const VariablesMap& variables,
                             bool& handled) override
    {
        handled = variables.count("version") != 0;
        return 9;
    }
    void beforeCommand(ProgramCommand& command) override
    {
        announced = command.name().toStdString();
    }
};

} // namespace

TEST(ProgramOptionsExtension, AHandledGlobalOptionEndsTheRun)
{
    VersionedTool tool;
    EXPECT_EQ(runTool(tool, {"--version", "first"}).exitCode, 9);
    EXPECT_EQ(tool.announced, "");
}

TEST(ProgramOptionsExtension, WhatIsNotHandledGoesToTheCommand)
{
    VersionedTool tool;
    EXPECT_EQ(runTool(tool, {"second"}).exitCode, 5);
}

TEST(ProgramOptionsExtension, TheCommandIsAnnouncedBeforeItRuns)
{
    VersionedTool tool;
    runTool(tool, {"second"});
    EXPECT_EQ(tool.announced, "second");
}

TEST(ProgramOptionsExtension, TheUsageNamesEachGlobalOption)
{
    VersionedTool tool;
    const std::string out = runTool(tool, {}).out;
    EXPECT_NE(out.find("Usage: tool [--help][--version] <command>"), std::string::npos);
}

// Commands by themselves.

TEST(ProgramCommandRun, PositionalTokensAreValuesOfTheDeclaredOption)
{
    CopyCommand command("copy");
    command.run({"a", "--output-name=o", "b"});
    EXPECT_EQ(command.inputs, (Arguments{"a", "b"}));
}

TEST(ProgramCommandRun, NoTokenIsNoError)
{
    CopyCommand command("copy");
    command.run({});
    EXPECT_EQ(command.runs, 1);
}

TEST(ProgramCommandRun, TheParsedOptionsAreHandedOn)
{
    CopyCommand command("copy");
    command.run({"a", "--output-name=o", "b"});
    EXPECT_EQ(command.optionsSeen, 3u);
}

TEST(ProgramCommandRun, ByDefaultPositionalTokensAreRefused)
{
    BareCommand command("bare");
    const CapturedStream err(std::cerr);
    EXPECT_EQ(command.run({"x"}), 1);
    EXPECT_EQ(err.text(), "Parsing Error: too many positional options have been specified on the "
                          "command line\n\n");
}

TEST(ProgramCommandRun, ExceptionsWhileParsingAreTold)
{
    const std::runtime_error error("no place for that");
    FaultyCommand<std::runtime_error> command(error);
    const CapturedStream err(std::cerr);
    EXPECT_EQ(command.run({"x"}), 1);
    EXPECT_EQ(err.text(), "Parsing Error: no place for that\n\n");
}

TEST(ProgramCommandRun, WhatIsNoStandardExceptionPassesThrough)
{
    FaultyCommand<int> command(7);
    EXPECT_THROW(command.run({"x"}), int);
}

TEST(ProgramCommandHelp, EndsWithTheLastOption)
{
    CopyCommand command("copy");
    const CapturedStream out(std::cout);
    command.printHelp();
    EXPECT_EQ(out.text(), groupOf("copy"));
}

TEST(ProgramCommandName, IsTheOneGiven)
{
    EXPECT_EQ(BareCommand("bare").name(), "bare");
}
