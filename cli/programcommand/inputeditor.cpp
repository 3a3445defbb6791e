#include "programcommand/inputeditor.h"

#include "console.h"
#include "data/attribute.h"
#include "data/content/graph.h"
#include "data/content/package.h"
#include "data/desc/function.h"
#include "data/desc/valuetype.h"
#include "data/floattext.h"
#include "data/latin1.h"
#include "ksx/core/collectgraphs.h"
#include "ksx/core/entryinputcontroller.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/inputusers.h"
#include "ksx/core/packageslistmanager.h"
#include "packageloading.h"
#include "packagesaving.h"
#include "programcommand/commandoptions.h"
#include "services.h"
#include <QFileInfo>
#include <boost/any.hpp>
#include <optional>

namespace ProgramCommand {

namespace {

namespace po = boost::program_options;
namespace ValueType = Ksx::Data::Desc::ValueType;
namespace FunctionType = Ksx::Data::Desc::FunctionType;
using Ksx::Core::InputController;
using Ksx::Core::InputsController;

const char* const Input = "input";
constexpr const char* SwitchToConstant = "switch-to-constant";
constexpr const char* SetDefaultValue = "set-default-value";

const QChar Separator = QLatin1Char('@'); // of an input's name and its value

QString defaultOutputName()
{
    return QStringLiteral("%1_edited").arg(QLatin1String(InputNamePattern));
}

bool readNumber(const QString& text, int& number)
{
    bool isNumber = false;
    number = text.toInt(&isNumber);
    return isNumber;
}

bool readNumber(const QString& text, unsigned& number)
{
    bool isNumber = false;
    number = text.toUInt(&isNumber);
    return isNumber;
}

bool readNumber(const QString& text, float& number)
{
    const std::optional<float> read = Orv::floatOf(text);
    number = read.value_or(0.0F);
    return read.has_value();
}

// The readers of values. Each returns an empty value for a text that is none.

template <class Number>
boost::any readSingle(const QString& text)
{
    Number number{};
    return readNumber(text, number) ? boost::any(number) : boost::any();
}

template <class Vector>
boost::any readValue(const QString& text)
{
    Vector vector;
    const QStringList parts = text.split(QLatin1Char(','));
    if (static_cast<std::size_t>(parts.size()) != vector.elements.size())
        return {};
    for (int i = 0; i < parts.size(); ++i)
        if (!readNumber(parts[i], vector.elements[static_cast<std::size_t>(i)]))
            return {};
    return vector;
}

template <>
boost::any readValue<bool>(const QString& text)
{
    unsigned number = 0;
    return readNumber(text, number) ? boost::any(number != 0) : boost::any();
}

struct Reader
{
    unsigned type;
    boost::any (*read)(const QString&);
};

constexpr Reader Readers[] = {
#define VALUE_TYPE(name, bit, value, ...) {ValueType::name, &readValue<Orv::Data::value>},
#define TEXT_TYPE(...)
#include "data/desc/valuetypes.inc"
    {FunctionType::AnyInt, &readSingle<unsigned>},
    {FunctionType::AnyFloat, &readSingle<float>},
};

// Empty if the text is no value of that type. Only a type of which no text is a value is told.
boost::any convertValue(const QString& text, unsigned type)
{
    for (const Reader& reader : Readers)
        if (reader.type == type)
            return reader.read(text);
    printError(QStringLiteral("Error! Value \"") + text +
               QStringLiteral("\" cannot be converted to the expected type"));
    return {};
}

// Null, and told, if there is none.
InputController* findInput(const InputsController& inputs, const QString& identifier)
{
    InputController* const input = inputs.inputByIdentifier(Orv::toLatin1(identifier));
    if (input == nullptr)
        printError(QStringLiteral("Error! Unknown input: ") + identifier);
    return input;
}

bool setDefaultValue(InputsController& inputs, const QString& identifier, const QString& text)
{
    InputController* const input = findInput(inputs, identifier);
    if (input == nullptr)
        return false;
    const boost::any value = convertValue(text, input->type());
    return !value.empty() && input->setDefaultValue(value);
}

// A text that is no value is no failure: what read the input reads zero then.
bool switchToConstant(InputsController& inputs, const QString& identifier, const QString& text)
{
    InputController* const input = findInput(inputs, identifier);
    if (input == nullptr)
        return false;
    const bool isImage = dynamic_cast<Ksx::Core::EntryInputController*>(input) != nullptr;
    const boost::any constant =
        text.isEmpty() && !isImage ? input->defaultValue() : convertValue(text, input->type());
    return !isImage && Ksx::Core::switchToConstant(inputs, *input, constant);
}

// An option that edits inputs, one for each of its values.
struct Edit
{
    const char* option;
    bool needsValue; // behind the name
    bool (*apply)(InputsController&, const QString& identifier, const QString& text);
};

// In the order in which they are done, whatever their order on the command line.
constexpr Edit Edits[] = {
    {SwitchToConstant, false, &switchToConstant},
    {SetDefaultValue, true, &setDefaultValue},
};

bool applyEdit(const Edit& edit, const QString& text, InputsController& inputs)
{
    const QStringList parts = text.split(Separator);
    if (parts.size() > 2 || (edit.needsValue && parts.size() != 2)) {
        // Without a blank before the last word.
        printError(QStringLiteral("Error! Invalid ") + QLatin1String(edit.option) +
                   QStringLiteral("parameters"));
        return false;
    }
    return edit.apply(inputs, parts.front(), parts.size() == 2 ? parts.back() : QString());
}

bool applyEdits(InputsController& inputs, const po::variables_map& variables)
{
    for (const Edit& edit : Edits)
        for (const QString& text : optionTexts(variables, edit.option))
            if (!applyEdit(edit, text, inputs))
                return false;
    return true;
}

} // namespace

InputEditor::InputEditor(Services* services)
    : Orv::Core::ProgramCommand(QStringLiteral("graph-parameters-editor")), m_services(services)
{
    po::options_description files = optionGroup(name(), "I/O options");
    addOption(files, Input, po::value<std::string>(),
              QStringLiteral("Ombrel File.\nThe first graph in the ombrel file is edited.\n"));
    addOption(files, OutputNameOption, silentDefault(defaultOutputName()),
              outputNameDescription(defaultOutputName()));
    addOption(files, OutputPathOption, po::value<std::string>(), outputPathDescription());
    addOption(files, PresetsPathOption, po::value<std::string>(), filterPresetsDescription());
    options().add(files);

    po::options_description edits = optionGroup(name(), "specific options");
    addOption(edits, SwitchToConstant, po::value<std::vector<std::string>>(),
              QStringLiteral("Remove input and switch all places using this input to a constant "
                             "value.\nUsage: [identifier of input] or \n       [identifier of "
                             "input]%1[value]")
                  .arg(Separator));
    addOption(edits, SetDefaultValue, po::value<std::vector<std::string>>(),
              QStringLiteral("Set default value of input.\nUsage: [identifier of input]%1[default "
                             "value]\nBe careful: value is clamped by min and max.\n")
                  .arg(Separator));
    options().add(edits);
}

void InputEditor::declarePositional(PositionalDescription& positional)
{
    positional.add(Input, -1);
}

int InputEditor::execute(const ParsedOptions&, const VariablesMap& variables)
{
    if (variables.count(Input) == 0) {
        printError(QStringLiteral("Error: No input specified !"));
        return 1;
    }
    const Presets presets = announcePresets(variables);
    auto& manager = *m_services->packagesListManager();
    const QString input = optionText(variables, Input);
    const bool isLoaded = loadPackages(manager, QStringList(input), presets.paths, true) == 0;
    const auto package = manager.packageForPath(input);
    if (!isLoaded || !package) { // without the latter a link on the way to it has gone since
        printError(QStringLiteral("input file cannot be correctly loaded"));
        return 1;
    }
    const auto graphs = Ksx::Core::collectGraphs(*package);
    if (graphs.empty()) {
        printError(QStringLiteral("No Graph found into the input file"));
        return 1;
    }
    // The controller of the graph has one for each node as well: gigabytes for thousands of instances
    // of a graph with thousands of images.
    Ksx::Core::InputsController inputs(*graphs.front());
    if (!applyEdits(inputs, variables))
        return 1;
    return save(*package, variables, presets.directory) ? 0 : 1;
}

bool InputEditor::save(const Ksx::Data::Content::Package& package, const VariablesMap& variables,
                       const QString& presetsPath) const
{
    printLine(QStringLiteral("Package Saved:")); // before it is
    auto& manager = *m_services->packagesListManager();
    const QFileInfo input(manager.filePath(package));
    const QString name = outputName(variables, input.baseName());
    if (name.isEmpty()) {
        printError(QStringLiteral("Error! Output name empty"));
        return false;
    }
    const QString target = targetFile(variables, input.absolutePath(), name);
    if (!saveEditedPackageTo(target, package, presetsPath, manager))
        return false;
    printLine(QStringLiteral("    ") + target);
    return true;
}

} // namespace ProgramCommand
