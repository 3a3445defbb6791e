#include "programcommand/filterspecialization.h"

#include "console.h"
#include "programcommand/commandoptions.h"

namespace ProgramCommand {

namespace {

namespace po = boost::program_options;

const char* const Input = "input";

QString defaultOutputName()
{
    return QStringLiteral("%1_specialized").arg(QLatin1String(InputNamePattern));
}

} // namespace

FilterSpecialization::FilterSpecialization(Services*)
    : Orv::Core::ProgramCommand(QStringLiteral("specialization"))
{
    const QString defaultGraphName = QLatin1String(InputGraphPattern);
    po::options_description files = optionGroup(name(), "I/O options");
    addOption(files, Input, po::value<std::string>(),
              QStringLiteral("Ombrel Filter File (obl or oblar file).\nThe first graph in the "
                             "ombrel file is instanciated in a new graph.\nGraph is added into "
                             "the package loaded by the option -i ifelse a new package is "
                             "created.\n"));
    addOption(files, "output-merge", po::bool_switch(),
              QStringLiteral("Merge generated content with output if a file is present,otherwise "
                             "the file is overwritten.\n"));
    addOption(files, "presets-path", po::value<std::string>(), filterPresetsDescription());
    addOption(files, "output-path", po::value<std::string>(), outputPathDescription());
    addOption(files, "output-name", silentDefault(defaultOutputName()),
              outputNameDescription(defaultOutputName()));
    addOption(files, "output-graph-name", silentDefault(defaultGraphName),
              QStringLiteral("Name of the graph in the output ombrel file.\nDefault='%1'.\nYou can "
                             "use the following patterns that will be replaced by the program "
                             "when saving the result of the process:\n-%2 replaced by the input "
                             "graph name.\n")
                  .arg(defaultGraphName, defaultGraphName));
    options().add(files);

    po::options_description edits = optionGroup(name(), "specific options");
    addOption(edits, "connect-image", po::value<std::vector<std::string>>(),
              QStringLiteral("Import image as resource in the new file, create a bitmap node and "
                             "connect it to filter's input named.\nUsage: "
                             "[input-name]@[parameter]@[value] \nAvailables parameters "
                             "are:\n\"path\" path of the image file\n\"format\" cooked format of "
                             "image (RAW/JPEG)\n\"level\" cooking compression level of image (0 "
                             "to 1)\n\"tiling\" tiling of image activation (0 or 1)\n"));
    addOption(edits, "connect-input", po::value<std::vector<std::string>>(),
              QStringLiteral("Create an input node and connect it to filter's input "
                             "named.\nUsage: [input-name] \n"));
    addOption(edits, "hide-parameters", po::bool_switch(),
              QStringLiteral("Hide all specific parameters of the filter.\n"));
    options().add(edits);
}

void FilterSpecialization::declarePositional(PositionalDescription& positional)
{
    positional.add(Input, -1);
}

int FilterSpecialization::execute(const ParsedOptions&, const VariablesMap&)
{
    printError(QStringLiteral("Error! The command specialization is not yet available"));
    return 1;
}

} // namespace ProgramCommand
