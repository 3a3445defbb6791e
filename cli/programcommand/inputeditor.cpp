#include "programcommand/inputeditor.h"

#include "console.h"
#include "programcommand/commandoptions.h"

namespace ProgramCommand {

namespace {

namespace po = boost::program_options;

const char* const Input = "input";

QString defaultOutputName()
{
    return QStringLiteral("%1_edited").arg(QLatin1String(InputNamePattern));
}

} // namespace

InputEditor::InputEditor(Services*)
    : Orv::Core::ProgramCommand(QStringLiteral("graph-parameters-editor"))
{
    po::options_description files = optionGroup(name(), "I/O options");
    addOption(files, Input, po::value<std::string>(),
              QStringLiteral("Ombrel File.\nThe first graph in the ombrel file is edited.\n"));
    addOption(files, "output-name", silentDefault(defaultOutputName()),
              outputNameDescription(defaultOutputName()));
    addOption(files, "output-path", po::value<std::string>(), outputPathDescription());
    addOption(files, "presets-path", po::value<std::string>(), filterPresetsDescription());
    options().add(files);

    const QLatin1String separator("@");
    po::options_description edits = optionGroup(name(), "specific options");
    addOption(edits, "switch-to-constant", po::value<std::vector<std::string>>(),
              QStringLiteral("Remove input and switch all places using this input to a constant "
                             "value.\nUsage: [identifier of input] or \n       [identifier of "
                             "input]%1[value]")
                  .arg(separator));
    addOption(edits, "set-default-value", po::value<std::vector<std::string>>(),
              QStringLiteral("Set default value of input.\nUsage: [identifier of input]%1[default "
                             "value]\nBe careful: value is clamped by min and max.\n")
                  .arg(separator));
    options().add(edits);
}

void InputEditor::declarePositional(PositionalDescription& positional)
{
    positional.add(Input, -1);
}

int InputEditor::execute(const ParsedOptions&, const VariablesMap&)
{
    printError(QStringLiteral("Error! The command graph-parameters-editor is not yet available"));
    return 1;
}

} // namespace ProgramCommand
