// Writes a script to standard output that completes the command lines of the tool.
#include "completion/commandline.h"
#include "data/filename.h"
#include "programcommand/filterspecialization.h"
#include "programcommand/inputeditor.h"
#include "programcommand/update.h"
#include <memory>
#include <vector>

int main(int argc, char** argv)
{
    // The commands run nothing, and so need no services.
    std::vector<std::unique_ptr<Orv::Core::ProgramCommand>> commands;
    commands.push_back(std::make_unique<ProgramCommand::Update>(nullptr));
    commands.push_back(std::make_unique<ProgramCommand::FilterSpecialization>(nullptr));
    commands.push_back(std::make_unique<ProgramCommand::InputEditor>(nullptr));
    Completion::Program program{
        "kestrix", {{"help", "show the help of a command", Completion::Values::None}}, {}};
    for (const auto& pointer : commands) {
        const Orv::Core::ProgramCommand& command = *pointer;
        program.commands.push_back(
            {Orv::toBytes(command.name()), Completion::optionsOf(command.options())});
    }
    return Completion::printScript(argc, argv, program);
}
