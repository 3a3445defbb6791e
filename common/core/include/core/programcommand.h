// One command of a console tool, with the options that it takes.
#pragma once

#include <QString>
#include <memory>
#include <string>
#include <vector>

// Declared here, since the library's own header compiles slowly; sources that read options use it.
namespace boost::program_options {
class options_description;
class positional_options_description;
class variables_map;
template <class Char>
class basic_parsed_options;
} // namespace boost::program_options

namespace Orv::Core {

// Base of all commands. The ProgramOptions that they are added to owns them. A concrete command
// adds its groups of options in its constructor. Values of options are the bytes of the command
// line: Orv::fromBytes() turns them into text.
class ProgramCommand
{
public:
    using OptionsDescription = boost::program_options::options_description;
    using PositionalDescription = boost::program_options::positional_options_description;
    using VariablesMap = boost::program_options::variables_map;
    using ParsedOptions = boost::program_options::basic_parsed_options<char>;

    // `name` is the word that the user types.
    explicit ProgramCommand(const QString& name);
    ProgramCommand(const ProgramCommand&) = delete;
    ProgramCommand& operator=(const ProgramCommand&) = delete;
    virtual ~ProgramCommand();

    // Returns the word that the user types.
    const QString& name() const { return m_name; }
    // Returns the options in their groups.
    const OptionsDescription& options() const { return *m_options; }

    // Writes the options to standard output, without a line end behind them.
    virtual void printHelp();
    // Does the work. Returns the exit code. An exception ends the program.
    virtual int execute(const ParsedOptions& parsedOptions, const VariablesMap& variables) = 0;

    // Parses the tokens behind the name of the command, and executes it. Returns the exit code.
    // Returns 1, with a line on standard error, if the command does not take the tokens.
    virtual int run(const std::vector<std::string>& arguments);
    // Names the options that take tokens without a dash. By default there are none.
    virtual void declarePositional(PositionalDescription& positional);

protected:
    // Returns the options, to be filled with groups, each a description with a caption.
    // Descriptions are shared: a group may die once it has been added.
    OptionsDescription& options() { return *m_options; }

private:
    QString m_name;
    std::unique_ptr<OptionsDescription> m_options;
};

} // namespace Orv::Core
