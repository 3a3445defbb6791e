// The commands of ksx, and the command lines that they are given.
#pragma once

#include <QString>
#include <QStringList>
#include <boost/program_options.hpp>
#include <stdexcept>
#include <string>
#include <vector>

namespace Ksx::Kit {

// The exit codes of all commands.
constexpr int NothingFound = 0;
constexpr int SomethingFound = 1;
constexpr int CannotDo = 2;

// A command line behind the name of the command.
struct Request
{
    boost::program_options::variables_map options;
    // The words without a dash in front, and "-" itself.
    QStringList operands;

    bool has(const char* option) const;
    // Returns the value of an option that holds one text. Returns an empty text without the option.
    QString text(const char* option) const;
};

// A row of the table of commands.
struct Command
{
    const char* name;
    // The words behind the name on a command line, for the help.
    const char* operands;
    // A sentence without a full stop.
    const char* summary;
    void (*declareOptions)(boost::program_options::options_description& options);
    // Returns the exit code. Prints results to standard output and failures to standard error.
    int (*run)(const Request& request);
};

// Returns all commands, in the order of the help.
const std::vector<Command>& commands();

// Returns the options of a command, with "help" behind them.
boost::program_options::options_description optionsOf(const Command& command);

// A command line that cannot be followed. The text is a sentence without a full stop.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// Runs the command that the arguments name, and returns the exit code. The first argument, the
// program, is skipped.
int runProgram(int argc, const char* const* argv);

} // namespace Ksx::Kit
