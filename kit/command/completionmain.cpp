// Writes a script to standard output that completes the command lines of ksx.
#include "command/command.h"
#include "completion/commandline.h"

int main(int argc, char** argv)
{
    Completion::Program program{"ksx",
                                {{"help", "show the commands", Completion::Values::None},
                                 {"version", "show the version", Completion::Values::None}},
                                {}};
    for (const Ksx::Kit::Command& command : Ksx::Kit::commands())
        program.commands.push_back(
            {command.name, Completion::optionsOf(Ksx::Kit::optionsOf(command))});
    return Completion::printScript(argc, argv, program);
}
