// The commands and options of a program, as those see them who complete its command line.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace Orv::Core {
class ProgramCommand;
} // namespace Orv::Core

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
    std::vector<Command> commands;
};

// Reads the options out of the commands themselves.
Program programOf(const std::string& name,
                  const std::vector<std::unique_ptr<Orv::Core::ProgramCommand>>& commands);

// Return a script for the shell. A command takes package files wherever it takes no option.
std::string bashScript(const Program& program);
std::string zshScript(const Program& program);
std::string fishScript(const Program& program);

} // namespace Completion
