#include "programcommand/commandoptions.h"

#include "console.h"
#include "core/fileplace.h"
#include "data/filename.h"
#include <new>

namespace ProgramCommand {

namespace {

namespace po = boost::program_options;

constexpr unsigned LineLength = 80;
constexpr unsigned MinDescriptionLength = 70;

} // namespace

po::options_description optionGroup(const QString& command, const char* kind)
{
    const QString caption = QStringLiteral("%1 %2").arg(command, QLatin1String(kind));
    return po::options_description(Orv::toBytes(caption), LineLength, MinDescriptionLength);
}

po::typed_value<std::string>* silentDefault(const QString& value)
{
    return po::value<std::string>()->default_value(Orv::toBytes(value), std::string());
}

void addOption(po::options_description& group, const char* name, const po::value_semantic* value,
               const QString& description)
{
    group.add_options()(name, value, Orv::toBytes(description).c_str());
    // The name goes through a stream, which loses it without a word when there is no memory.
    if (group.options().back()->long_name() != name)
        throw std::bad_alloc();
}

QString optionText(const po::variables_map& variables, const char* name)
{
    return variables.count(name) == 0 ? QString()
                                      : Orv::fromBytes(variables[name].as<std::string>());
}

QStringList optionTexts(const po::variables_map& variables, const char* name)
{
    QStringList texts;
    if (variables.count(name) != 0)
        for (const std::string& text : variables[name].as<std::vector<std::string>>())
            texts.append(Orv::fromBytes(text));
    return texts;
}

Presets announcePresets(const po::variables_map& variables)
{
    Presets presets;
    if (variables.count(PresetsPathOption) == 0)
        return presets;
    presets.directory = optionText(variables, PresetsPathOption);
    presets.paths.append(Orv::Core::absolutePath(presets.directory));
    printLine(QStringLiteral("Presets Path added: ") + presets.paths.front());
    return presets;
}

QString outputName(const po::variables_map& variables, const QString& inputName)
{
    return Ksx::Core::outputName(optionText(variables, OutputNameOption), inputName);
}

std::optional<QString> outputFolder(const po::variables_map& variables)
{
    if (variables.count(OutputPathOption) == 0)
        return std::nullopt;
    return optionText(variables, OutputPathOption);
}

QString targetFile(const po::variables_map& variables, const QString& inputPath,
                   const QString& baseName)
{
    return Ksx::Core::outputFile(outputFolder(variables), inputPath, baseName);
}

QString outputNameDescription(const QString& defaultName)
{
    return QStringLiteral("Output file name. \nDefault='%1'.\nYou can use the following patterns "
                          "that will be replaced by the program when saving the result of the "
                          "process:\n-%2 replaced by the input filename.\n")
        .arg(defaultName, QLatin1String(InputNamePattern));
}

QString outputPathDescription()
{
    return QStringLiteral("Output file path.\nDefault path is empty.\nYou can use the following "
                          "patterns that will be replaced by the program when saving the result "
                          "of the process:\n-%1 replaced by the input filepath.\n")
        .arg(QLatin1String(InputPathPattern));
}

QString filterPresetsDescription()
{
    return QStringLiteral("Path to presets library.\nThis option is mandatory if your filter have "
                          "a dependency to the presets library.\n");
}

} // namespace ProgramCommand
