#include "core/programcommand.h"

#include "optionstext.h"

#include <boost/program_options.hpp>
#include <exception>
#include <iostream>
#include <new>

namespace Orv::Core {

namespace po = boost::program_options;

namespace {
constexpr unsigned LineLength = 80;
constexpr unsigned MinDescriptionLength = 40;
} // namespace

ProgramCommand::ProgramCommand(const QString& name)
    : m_name(name),
      m_options(std::make_unique<po::options_description>(LineLength, MinDescriptionLength))
{}

ProgramCommand::~ProgramCommand() = default;

void ProgramCommand::printHelp()
{
    std::cout << optionsText(*m_options);
}

void ProgramCommand::declarePositional(PositionalDescription&) {}

int ProgramCommand::run(const std::vector<std::string>& arguments)
{
    po::options_description all(LineLength, MinDescriptionLength); // outlives `parsedOptions`
    po::parsed_options parsedOptions(nullptr);
    po::variables_map variables;
    try {
        all.add(*m_options);
        po::positional_options_description positional;
        declarePositional(positional);
        parsedOptions =
            po::command_line_parser(arguments).options(all).positional(positional).run();
        po::store(parsedOptions, variables);
        po::notify(variables);
    } catch (const std::bad_alloc&) {
        throw; // no fault of the arguments
    } catch (const std::exception& error) {
        std::cerr << "Parsing Error: " << error.what() << "\n\n";
        return 1;
    }
    return execute(parsedOptions, variables);
}

} // namespace Orv::Core
