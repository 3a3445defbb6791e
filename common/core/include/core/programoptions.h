// The dispatch of a console tool: from the arguments of the process to one command.
#pragma once

#include "core/programcommand.h"
#include <QString>
#include <memory>
#include <string>
#include <vector>

namespace Orv::Core {

// Owns the commands, and the options in front of them, of which there is one, "help". Errors of the
// command line are written to standard error. Lives in main().
//
// The arguments are parsed twice. Here the global options and the name of the command are read, and
// the rest is set aside. The command parses the rest. Names of options may be abbreviated.
class ProgramOptions
{
public:
    using OptionsDescription = ProgramCommand::OptionsDescription;
    using VariablesMap = ProgramCommand::VariablesMap;
    using ParsedOptions = ProgramCommand::ParsedOptions;

    // `programName` is part of the usage text. `lineLength` is the length of a line of the list of
    // global options. At least `minDescriptionLength` of it is left to the descriptions. Both are
    // in characters.
    ProgramOptions(const QString& programName, unsigned lineLength, unsigned minDescriptionLength);
    ProgramOptions(const ProgramOptions&) = delete;
    ProgramOptions& operator=(const ProgramOptions&) = delete;
    virtual ~ProgramOptions();

    // Adds a command, behind the others.
    void addCommand(std::unique_ptr<ProgramCommand> command);

    // Returns the first command of a name, whatever the case of its letters. Returns null if there
    // is none.
    ProgramCommand* findCommand(const QString& name) const;

    // Runs the command that the arguments name, and returns the exit code. The first argument, the
    // program, is skipped. A tool with one command has no word for it: all arguments belong to it.
    // At least one command must have been added.
    int run(int argc, const char* const* argv);

    // Writes usage, names of commands and global options to standard output.
    virtual void printHelp();

protected:
    // For tools with global options of their own. Returns the exit code if it sets `handled`. The
    // command is then not run.
    virtual int processGlobalOptions(const ParsedOptions& parsedOptions,
                                     const VariablesMap& variables, bool& handled);
    // For tools that do something before each command.
    virtual void beforeCommand(ProgramCommand& command);

    OptionsDescription& globalOptions() { return *m_globalOptions; }

private:
    bool parse(const std::vector<std::string>& arguments, ParsedOptions& parsedOptions,
               VariablesMap& variables) const;
    int printRequestedHelp(const QString& commandName);
    ProgramCommand* chooseCommand(const ParsedOptions& parsedOptions,
                                  const VariablesMap& variables);

    QString m_programName;
    std::unique_ptr<OptionsDescription> m_globalOptions;
    std::vector<std::unique_ptr<ProgramCommand>> m_commands; // in the order of registration
};

} // namespace Orv::Core
