#include "core/programoptions.h"

#include "core/fileplace.h"
#include "data/filename.h"
#include "optionstext.h"
#include <boost/program_options.hpp>
#include <algorithm>
#include <exception>
#include <iostream>
#include <new>
#include <utility>

namespace Orv::Core {

namespace po = boost::program_options;

namespace {

constexpr unsigned LineLength = 80;
constexpr unsigned MinDescriptionLength = 40;

constexpr const char* HelpOption = "help";
// The hidden options that take the tokens without a dash: the first one, and the rest.
constexpr const char* CommandOption = "command";
constexpr const char* UnregisteredOption = "unregistered";

// A value of the help option stands in the same token, "--help=update". The parser also gives it
// the token behind, which is taken away again: "--help update" asks for the global help.
void dropSeparateHelpValues(po::parsed_options& parsedOptions)
{
    for (po::option& option : parsedOptions.options)
        if (option.string_key == HelpOption && option.original_tokens.size() > 1)
            option.value.clear();
}

bool isCommandArgument(const po::option& option)
{
    return option.unregistered || option.string_key == UnregisteredOption;
}

// The tokens for the command's own parser, in their order. What is neither such a token nor the
// name of the command leaves `parsedOptions`.
std::vector<std::string> takeCommandArguments(po::parsed_options& parsedOptions)
{
    std::vector<std::string> arguments;
    std::vector<po::option> left;
    for (const po::option& option : parsedOptions.options) {
        if (isCommandArgument(option))
            arguments.insert(arguments.end(), option.original_tokens.begin(),
                             option.original_tokens.end());
        else if (option.string_key != CommandOption)
            continue;
        left.push_back(option);
    }
    parsedOptions.options = std::move(left);
    return arguments;
}

} // namespace

ProgramOptions::ProgramOptions(const QString& programName, unsigned lineLength,
                               unsigned minDescriptionLength)
    : m_programName(programName), m_globalOptions(std::make_unique<po::options_description>(
                                      "global options", lineLength, minDescriptionLength))
{
    // clang-format off
    m_globalOptions->add_options()
        (HelpOption, po::value<std::string>()->implicit_value("", ""),
         "Display help on availables commands.\nIf no argument is given, global help is displayed");
    // clang-format on
}

ProgramOptions::~ProgramOptions() = default;

void ProgramOptions::addCommand(std::unique_ptr<ProgramCommand> command)
{
    m_commands.push_back(std::move(command));
}

ProgramCommand* ProgramOptions::findCommand(const QString& name) const
{
    const auto found = std::find_if(m_commands.begin(), m_commands.end(), [&](const auto& command) {
        return QString::compare(command->name(), name, Qt::CaseInsensitive) == 0;
    });
    return found != m_commands.end() ? found->get() : nullptr;
}

bool ProgramOptions::parse(const std::vector<std::string>& arguments, ParsedOptions& parsedOptions,
                           VariablesMap& variables) const
{
    try {
        po::options_description all(LineLength, MinDescriptionLength);
        all.add(*m_globalOptions);
        // clang-format off
        all.add_options()
            (CommandOption, po::value<std::string>(), "")
            (UnregisteredOption, po::value<std::vector<std::string>>(), "");
        // clang-format on
        po::positional_options_description positional;
        if (m_commands.size() > 1)
            positional.add(CommandOption, 1);
        positional.add(UnregisteredOption, -1);
        parsedOptions = po::command_line_parser(arguments)
                            .options(all)
                            .positional(positional)
                            .allow_unregistered()
                            .run();
        dropSeparateHelpValues(parsedOptions);
        po::store(parsedOptions, variables);
        po::notify(variables);
        parsedOptions.description = m_globalOptions.get(); // `all` ends here
        return true;
    } catch (const std::bad_alloc&) {
        throw; // no fault of the arguments
    } catch (const std::exception& error) {
        std::cerr << "Parsing Error: " << error.what() << "\n\n";
        return false;
    }
}

int ProgramOptions::run(int argc, const char* const* argv)
{
    const std::vector<std::string> tokens(argv + std::min(argc, 1), argv + argc);
    po::parsed_options parsedOptions(nullptr);
    po::variables_map variables;
    if (!parse(tokens, parsedOptions, variables))
        return 1;
    if (variables.empty()) {
        printHelp();
        return 0;
    }
    if (variables.count(HelpOption) != 0)
        return printRequestedHelp(fromBytes(variables[HelpOption].as<std::string>()));
    bool handled = false;
    const int exitCode = processGlobalOptions(parsedOptions, variables, handled);
    if (handled)
        return exitCode;
    const std::vector<std::string> arguments = takeCommandArguments(parsedOptions);
    ProgramCommand* command = chooseCommand(parsedOptions, variables);
    if (command == nullptr)
        return 1;
    if (!hasCurrentFolder()) {
        std::cerr << "Error! Current folder not found" << std::endl;
        return 1;
    }
    beforeCommand(*command);
    return command->run(arguments);
}

int ProgramOptions::printRequestedHelp(const QString& commandName)
{
    if (commandName.isEmpty()) {
        printHelp();
        if (m_commands.size() == 1)
            m_commands.front()->printHelp();
        return 0;
    }
    ProgramCommand* command = findCommand(commandName);
    if (command == nullptr) {
        std::cerr << "Unknow command " << toBytes(commandName) << '!' << std::endl;
        return 1;
    }
    command->printHelp();
    return 0;
}

ProgramCommand* ProgramOptions::chooseCommand(const ParsedOptions& parsedOptions,
                                              const VariablesMap& variables)
{
    Q_ASSERT(!m_commands.empty());
    if (m_commands.size() < 2)
        return m_commands.front().get();
    // The name comes first: even an unknown option in front of it is taken for a missing name.
    if (parsedOptions.options.empty() ||
        parsedOptions.options.front().string_key != CommandOption) {
        std::cerr << "Error: no command specified!" << std::endl;
        printHelp();
        return nullptr;
    }
    ProgramCommand* command = findCommand(fromBytes(variables[CommandOption].as<std::string>()));
    if (command == nullptr)
        std::cerr << "Error: Invalid command!" << std::endl;
    return command;
}

int ProgramOptions::processGlobalOptions(const ParsedOptions&, const VariablesMap&, bool& handled)
{
    handled = false;
    return 0;
}

void ProgramOptions::beforeCommand(ProgramCommand&) {}

void ProgramOptions::printHelp()
{
    QString text;
    if (m_commands.size() > 1) {
        QString optionNames;
        for (const auto& option : m_globalOptions->options())
            optionNames += QStringLiteral("[%1]").arg(fromBytes(option->format_name()));
        text = QStringLiteral("Usage: %1 %2 <command> [<args>]\n\nAvailable commands are: \n")
                   .arg(m_programName, optionNames);
        for (const auto& command : m_commands)
            text += QStringLiteral("   %1 \n").arg(command->name());
        text += QStringLiteral("\nSee '%1 --help <command>' for more information on a specific "
                               "command.\n")
                    .arg(m_programName);
    } else {
        text = QStringLiteral("Usage: %1 [<args>]\n").arg(m_programName);
    }
    std::cout << '\n' << toBytes(text) << std::endl << optionsText(*m_globalOptions) << std::endl;
}

} // namespace Orv::Core
