#include "programcommand/filterspecialization.h"

#include "console.h"
#include "core/fileplace.h"
#include "data/content/graph.h"
#include "data/content/package.h"
#include "ksx/core/collectgraphs.h"
#include "ksx/core/packagecontroller.h"
#include "ksx/core/packagelistener.h"
#include "packageloading.h"
#include "packagesaving.h"
#include "programcommand/commandoptions.h"
#include "services.h"
#include <QFileInfo>

namespace ProgramCommand {

namespace {

namespace po = boost::program_options;

const char* const Input = "input";
const char* const OutputMerge = "output-merge";
const char* const OutputGraphName = "output-graph-name";
const char* const ConnectImage = "connect-image";
const char* const ConnectInput = "connect-input";
const char* const HideParameters = "hide-parameters";

QString defaultOutputName()
{
    return QStringLiteral("%1_specialized").arg(QLatin1String(InputNamePattern));
}

// An empty name is told, and is a name all the same.
QString targetOf(const QFileInfo& input, const po::variables_map& variables)
{
    QString name = optionText(variables, OutputNameOption);
    name.replace(QLatin1String(InputNamePattern), input.baseName());
    if (name.isEmpty())
        printError(QStringLiteral("Error! Output name empty"));
    return targetFile(variables, input.absolutePath(), name);
}

void printNotLoaded()
{
    printError(QStringLiteral("Error! Input file cannot be correctly loaded"));
}

} // namespace

FilterSpecialization::FilterSpecialization(Services* services)
    : Orv::Core::ProgramCommand(QStringLiteral("specialization")), m_services(services)
{
    const QString defaultGraphName = QLatin1String(InputGraphPattern);
    po::options_description files = optionGroup(name(), "I/O options");
    addOption(files, Input, po::value<std::string>(),
              QStringLiteral("Ombrel Filter File (obl or oblar file).\nThe first graph in the "
                             "ombrel file is instanciated in a new graph.\nGraph is added into "
                             "the package loaded by the option -i ifelse a new package is "
                             "created.\n"));
    addOption(files, OutputMerge, po::bool_switch(),
              QStringLiteral("Merge generated content with output if a file is present,otherwise "
                             "the file is overwritten.\n"));
    addOption(files, PresetsPathOption, po::value<std::string>(), filterPresetsDescription());
    addOption(files, OutputPathOption, po::value<std::string>(), outputPathDescription());
    addOption(files, OutputNameOption, silentDefault(defaultOutputName()),
              outputNameDescription(defaultOutputName()));
    addOption(files, OutputGraphName, silentDefault(defaultGraphName),
              QStringLiteral("Name of the graph in the output ombrel file.\nDefault='%1'.\nYou can "
                             "use the following patterns that will be replaced by the program "
                             "when saving the result of the process:\n-%2 replaced by the input "
                             "graph name.\n")
                  .arg(defaultGraphName, defaultGraphName));
    options().add(files);

    po::options_description edits = optionGroup(name(), "specific options");
    addOption(edits, ConnectImage, po::value<std::vector<std::string>>(),
              QStringLiteral("Import image as resource in the new file, create a bitmap node and "
                             "connect it to filter's input named.\nUsage: "
                             "[input-name]@[parameter]@[value] \nAvailables parameters "
                             "are:\n\"path\" path of the image file\n\"format\" cooked format of "
                             "image (RAW/JPEG)\n\"level\" cooking compression level of image (0 "
                             "to 1)\n\"tiling\" tiling of image activation (0 or 1)\n"));
    addOption(edits, ConnectInput, po::value<std::vector<std::string>>(),
              QStringLiteral("Create an input node and connect it to filter's input "
                             "named.\nUsage: [input-name] \n"));
    addOption(edits, HideParameters, po::bool_switch(),
              QStringLiteral("Hide all specific parameters of the filter.\n"));
    options().add(edits);
}

void FilterSpecialization::declarePositional(PositionalDescription& positional)
{
    positional.add(Input, -1);
}

int FilterSpecialization::execute(const ParsedOptions&, const VariablesMap& variables)
{
    if (variables.count(Input) == 0) {
        printError(QStringLiteral("Error! No input specified"));
        return 1;
    }
    const Presets presets = announcePresets(variables);
    const QString input = optionText(variables, Input);
    if (!loadInput(input, presets.paths))
        return 1;
    auto& manager = *m_services->packagesListManager();
    const PackageBox loaded = manager.packageForPath(input);
    if (!loaded) { // a link on the way to it has gone since
        printNotLoaded();
        return 1;
    }
    if (Ksx::Core::collectGraphs(*loaded).empty()) {
        printError(QStringLiteral("Error! No graph found into the input file"));
        return 1;
    }
    const QString target = targetOf(QFileInfo(Orv::Core::absolutePath(input)), variables);
    const PackageBox output = outputPackage(*loaded, target, variables, presets.paths);
    // A target that is the input itself is open once more now, and that one is what counts.
    const PackageBox source = manager.packageForPath(input);
    if (!source) {
        printNotLoaded();
        return 1;
    }
    const auto filter = Ksx::Core::collectGraphs(*source).front();
    const auto package = Ksx::Core::PackageListener::of(*output).controller();
    if (!specialize(*package, filter, variables))
        return 1;
    if (!saveEditedPackageTo(target, *output, presets.directory, manager))
        return 1;
    printLine(QStringLiteral("Package Saved: ") + target);
    return 0;
}

// Twice: the package of the second load is the one that is worked on.
bool FilterSpecialization::loadInput(const QString& input, const QStringList& presetsPaths) const
{
    auto& manager = *m_services->packagesListManager();
    if (loadPackages(manager, QStringList(input), presetsPaths, true) != 0) {
        printNotLoaded();
        return false;
    }
    if (loadPackages(manager, QStringList(input), presetsPaths, true) != 0) {
        printError(QStringLiteral("Input Files cannot be correctly loaded"));
        return false;
    }
    return true;
}

// The package at the target, if it is to be merged with and can be opened, else a new one.
FilterSpecialization::PackageBox
FilterSpecialization::outputPackage(const Ksx::Data::Content::Package& source,
                                    const QString& target, const VariablesMap& variables,
                                    const QStringList& presetsPaths) const
{
    auto& manager = *m_services->packagesListManager();
    if (variables[OutputMerge].as<bool>() && Orv::Core::mayExist(target)) {
        const bool isLoaded = loadPackages(manager, QStringList(target), presetsPaths, true) == 0;
        if (PackageBox found = manager.packageForPath(target); isLoaded && found)
            return found;
        printError(QStringLiteral("Warning! Output file not found and cannot be merged"));
    }
    Ksx::Core::PackagesListManager::DependencyEntry entry;
    entry.package = manager.keep(Ksx::Core::PackagesListManager::newPackage(
        Ksx::Core::PackageListener::of(source).controller()->identifier()));
    manager.finishLoading({entry});
    return entry.package;
}

bool FilterSpecialization::specialize(Ksx::Core::PackageController& package,
                                      const GraphSpecializer::GraphBox& filter,
                                      const VariablesMap& variables) const
{
    QString name = optionText(variables, OutputGraphName);
    name.replace(QLatin1String(InputGraphPattern),
                 QString::fromLatin1(filter->identifier().get().c_str()));
    GraphSpecializer specializer(package, filter);
    if (!specializer.instantiate(name) || !specializer.addOutputs())
        return false;
    if (variables.count(ConnectImage) != 0) {
        const auto images =
            parseImageConnections(ConnectImage, optionTexts(variables, ConnectImage));
        if (!images || !specializer.connectImages(*images))
            return false;
    }
    if (!specializer.connectInputs(optionTexts(variables, ConnectInput)))
        return false;
    if (!variables[HideParameters].as<bool>())
        specializer.exposeParameters();
    return true;
}

} // namespace ProgramCommand
