// Writes a script to standard output that completes the command lines of the tool: "bash", "zsh" or
// "fish" is the argument. The build runs it.
#include "completion/commandline.h"
#include "programcommand/filterspecialization.h"
#include "programcommand/inputeditor.h"
#include "programcommand/update.h"
#include <iostream>
#include <map>

int main(int argc, char** argv)
{
    const std::map<std::string, std::string (*)(const Completion::Program&)> scripts = {
        {"bash", &Completion::bashScript},
        {"zsh", &Completion::zshScript},
        {"fish", &Completion::fishScript}};
    const auto script = scripts.find(argc == 2 ? argv[1] : "");
    if (script == scripts.end()) {
        std::cerr << "usage: kestrix-completion bash|zsh|fish\n";
        return 2;
    }
    // The commands run nothing, and so need no services.
    std::vector<std::unique_ptr<Orv::Core::ProgramCommand>> commands;
    commands.push_back(std::make_unique<ProgramCommand::Update>(nullptr));
    commands.push_back(std::make_unique<ProgramCommand::FilterSpecialization>(nullptr));
    commands.push_back(std::make_unique<ProgramCommand::InputEditor>(nullptr));
    std::cout << script->second(Completion::programOf("kestrix", commands));
    return 0;
}
