// The commands and options of a program, as those see them who complete its command line.
#pragma once

#include <string>
#include <vector>

namespace boost::program_options {
class options_description;
} // namespace boost::program_options

namespace Completion {

// The kind of values that an option takes.
enum class Values
{
    None, // the option is a switch
    Packages,
    Folders,
    Any,
};

struct Option
{
    std::string name; // without dashes
    std::string text; // the first sentence of its description
    Values values = Values::Any;
};

struct Command
{
    std::string name;
    std::vector<Option> options;
};

struct Program
{
    std::string name;
    std::vector<Option> options; // in front of a command
    std::vector<Command> commands;
};

// Reads the options out of the description by which they are parsed.
std::vector<Option> optionsOf(const boost::program_options::options_description& description);

// Return a script for the shell. A command takes package files wherever it takes no option.
std::string bashScript(const Program& program);
std::string zshScript(const Program& program);
std::string fishScript(const Program& program);

// The main function of a program that writes one of the scripts to standard output: "bash", "zsh" or
// "fish" is the argument. The build runs it.
int printScript(int argc, const char* const* argv, const Program& program);

} // namespace Completion
