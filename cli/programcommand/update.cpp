#include "programcommand/update.h"

#include "console.h"
#include "core/fileplace.h"
#include "data/content/package.h"
#include "ksx/core/outputfile.h"
#include "ksx/core/packageslistmanager.h"
#include "packageloading.h"
#include "packagesaving.h"
#include "programcommand/commandoptions.h"
#include "services.h"

namespace ProgramCommand {

namespace {

namespace po = boost::program_options;
using PackageBox = Ksx::Core::PackagesListManager::PackageBox;

const char* const Inputs = "inputs";
const char* const NoDependency = "no-dependency"; // accepted, and read by nothing

const QString Indent = QStringLiteral("    ");

QString defaultOutputName()
{
    return QLatin1String(Ksx::Core::UpdatedName);
}

} // namespace

Update::Update(Services* services)
    : Orv::Core::ProgramCommand(QStringLiteral("update")), m_services(services)
{
    po::options_description group = optionGroup(name(), "I/O options");
    addOption(group, Inputs, po::value<std::vector<std::string>>(),
              QStringLiteral("Ombrel files to update.\nThis option is implicit, so you can just "
                             "provide a list of files at the end of your arguments, they will be "
                             "interpreted as inputs.\n"));
    addOption(group, OutputPathOption, po::value<std::string>(), outputPathDescription());
    addOption(group, OutputNameOption, silentDefault(defaultOutputName()),
              outputNameDescription(defaultOutputName()));
    addOption(group, PresetsPathOption, po::value<std::string>(),
              QStringLiteral("Path to presets library.\nThis option is mandatory if your files "
                             "have a dependency to the presets library.\n"));
    addOption(group, NoDependency, po::bool_switch(),
              QStringLiteral("This option disable loading of dependencies.\n"));
    options().add(group);
}

void Update::declarePositional(PositionalDescription& positional)
{
    positional.add(Inputs, -1);
}

int Update::execute(const ParsedOptions&, const VariablesMap& variables)
{
    if (variables.count(Inputs) == 0) {
        printError(QStringLiteral("Error! No input(s) specified"));
        return 1;
    }
    const Presets presets = announcePresets(variables);
    auto& manager = *m_services->packagesListManager();
    if (loadPackages(manager, optionTexts(variables, Inputs), presets.paths, true) != 0) {
        printError(QStringLiteral("Packages cannot be correctly loaded"));
        return 1;
    }
    printLine(QStringLiteral("Packages Loaded:"));
    for (const PackageBox& package : manager.openPackages())
        printLine(Indent + manager.filePath(*package));
    printLine(QStringLiteral("Packages Saved:"));
    return savePackages(variables, presets.directory) ? 0 : 1;
}

// False if one of them could not be written; the others are written all the same.
bool Update::savePackages(const VariablesMap& variables, const QString& presetsPath) const
{
    auto& manager = *m_services->packagesListManager();
    Ksx::Core::PackageSaver saver(QDir(Orv::Core::absolutePath(presetsPath)));
    QStringList targets;
    for (const PackageBox& package : manager.openPackages()) {
        targets << Ksx::Core::updatedFile(optionText(variables, OutputNameOption),
                                          outputFolder(variables), manager.filePath(*package));
        if (!targets.back().isEmpty())
            saver.add(*package, targets.back());
    }
    bool areSaved = true;
    for (const QString& target : targets) {
        if (target.isEmpty()) {
            printError(QStringLiteral("Error! Output name empty"));
            areSaved = false;
        } else if (isSaved(saver.next(), target)) {
            printLine(Indent + target);
        } else {
            areSaved = false;
        }
    }
    return areSaved;
}

} // namespace ProgramCommand
