#include "command/command.h"

#include "command/commandtable.h"
#include "console.h"
#include "core/fileplace.h"
#include "data/filename.h"
#include <algorithm>
#include <iostream>
#include <sstream>

namespace Ksx::Kit {

namespace {

namespace po = boost::program_options;

constexpr unsigned LineLength = 80;
constexpr const char* HelpOption = "help";
constexpr const char* VersionOption = "version";
constexpr const char* OperandsOption = "operands";

const Command* findCommand(const std::string& name)
{
    const std::vector<Command>& all = commands();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const Command& command) { return command.name == name; });
    return found == all.end() ? nullptr : &*found;
}

std::string globalHelp()
{
    std::size_t width = 0;
    for (const Command& command : commands())
        width = std::max(width, std::string(command.name).size());
    std::string text =
        "Usage: ksx COMMAND [OPTION...] [OPERAND...]\n\n"
        "Looks at package files, and writes none but those that it is told to write.\n\nCommands:\n";
    for (const Command& command : commands()) {
        std::string name = command.name;
        name.resize(width + 2, ' ');
        text += "  " + name + command.summary + "\n";
    }
    return text + "\n'ksx COMMAND --help' shows the options of a command, and 'ksx --version' "
                  "the version.\n\n"
                  "Exit codes: 0 nothing found, 1 something found, 2 a failure, which standard "
                  "error tells.\n";
}

std::string helpOf(const Command& command)
{
    std::ostringstream text;
    text << "Usage: ksx " << command.name << " [OPTION...] " << command.operands << "\n\n"
         << command.summary << ".\n\nOptions:\n"
         << optionsOf(command);
    return text.str();
}

// An abbreviation would become another option when one is added.
constexpr int Style =
    po::command_line_style::default_style & ~po::command_line_style::allow_guessing;

Request parse(const Command& command, const std::vector<std::string>& words)
{
    po::options_description all = optionsOf(command);
    all.add_options()(OperandsOption, po::value<std::vector<std::string>>());
    po::positional_options_description positional;
    positional.add(OperandsOption, -1);
    Request request;
    po::store(po::command_line_parser(words).options(all).positional(positional).style(Style).run(),
              request.options);
    po::notify(request.options);
    if (request.options.count(OperandsOption) != 0)
        for (const std::string& word :
             request.options[OperandsOption].as<std::vector<std::string>>())
            request.operands.append(Orv::fromBytes(word));
    return request;
}

int fail(const std::string& reason, const std::string& help)
{
    printError(QStringLiteral("Error! ") + Orv::fromBytes(reason));
    printError(QStringLiteral("See '%1'").arg(Orv::fromBytes(help)));
    return CannotDo;
}

int runCommand(const Command& command, const std::vector<std::string>& words)
{
    try {
        const Request request = parse(command, words);
        if (request.has(HelpOption)) {
            std::cout << helpOf(command);
            return NothingFound;
        }
        if (!Orv::Core::hasCurrentFolder()) {
            printError(QStringLiteral("Error! Current folder not found"));
            return CannotDo;
        }
        return command.run(request);
    } catch (const po::error& error) {
        return fail(error.what(), "ksx " + std::string(command.name) + " --help");
    } catch (const UsageError& error) {
        return fail(error.what(), "ksx " + std::string(command.name) + " --help");
    }
}

} // namespace

bool Request::has(const char* option) const
{
    const auto& value = options[option];
    return !value.empty() && (value.value().type() != typeid(bool) || value.as<bool>());
}

QString Request::text(const char* option) const
{
    return has(option) ? Orv::fromBytes(options[option].as<std::string>()) : QString();
}

po::options_description optionsOf(const Command& command)
{
    po::options_description options(LineLength);
    command.declareOptions(options);
    options.add_options()(HelpOption, po::bool_switch(), "Shows this help.");
    return options;
}

int runProgram(int argc, const char* const* argv)
{
    const std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
    const std::string first = words.empty() ? std::string() : words.front();
    if (first == std::string("--") + HelpOption) {
        std::cout << globalHelp();
        return NothingFound;
    }
    if (first == std::string("--") + VersionOption) {
        std::cout << "ksx " KESTRIX_VERSION "\n";
        return NothingFound;
    }
    const Command* const command = findCommand(first);
    if (command != nullptr)
        return runCommand(*command, {words.begin() + 1, words.end()});
    return fail(first.empty() ? "No command given" : "There is no command " + first, "ksx --help");
}

} // namespace Ksx::Kit
