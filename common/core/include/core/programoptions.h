// The dispatch of a console tool: from the process's arguments to one command.
#pragma once

#include "core/programcommand.h"
#include <QString>
#include <memory>
#include <string>
#include <vector>

namespace Orv::Core {

// Owns the options that stand before any command, of which there is one, "help", and the commands.
// Errors of the command line are told on standard error. Lives in main().
//
// The arguments are parsed twice: here for the global options and the command's name, with all that
// is unknown set aside, and then in the command. Names of options may be abbreviated.
class ProgramOptions
{
public:
    using OptionsDescription = ProgramCommand::OptionsDescription;
    using VariablesMap = ProgramCommand::VariablesMap;
    using ParsedOptions = ProgramCommand::ParsedOptions;

    // `programName` stands in the usage text. The two lengths are in characters: of a line of the
    // list of global options, and of the least part of it that is left to the descriptions.
    ProgramOptions(const QString& programName, unsigned lineLength, unsigned minDescriptionLength);
    ProgramOptions(const ProgramOptions&) = delete;
    ProgramOptions& operator=(const ProgramOptions&) = delete;
    virtual ~ProgramOptions();

    void addCommand(std::unique_ptr<ProgramCommand> command);
    // The first command of that name, whatever the case of its letters; null if there is none.
    ProgramCommand* findCommand(const QString& name) const;

    // Runs the command that the arguments name and answers the exit code. The first argument, the
    // program, is skipped. With one command alone there is no word for it: all arguments are its
    // own. At least one command must have been added.
    int run(int argc, const char* const* argv);

    // Writes usage, names of commands and global options to standard output.
    virtual void printHelp();

protected:
    // Points of extension for tools with global options of their own. The answer is the exit code
    // if `handled` was set; the command is then not run.
    virtual int processGlobalOptions(const ParsedOptions& parsedOptions,
                                     const VariablesMap& variables, bool& handled);
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
