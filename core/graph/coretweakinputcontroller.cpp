#include "ksx/core/tweakinputcontroller.h"

#include "content/constantvalue.h"
#include "data/content/graphmanipulators.h"
#include "data/content/layoutmanipulators.h"
#include "data/desc/parameter.h"
#include "data/latin1.h"
#include "ksx/core/edit.h"
#include "ksx/core/graphinterface.h"
#include <QCoreApplication>
#include <utility>
#include <vector>

namespace Ksx::Core {

namespace {

using namespace Data::Content;
using Orv::Core::ManipulatorStruct;
using Orv::Data::BaseObject;
using Orv::Data::DataPointerBoxMasterKey;

constexpr const char* DropDownList = "dropdownlist";

// What the edit writes.
struct Looks
{
    std::string identifier; // as wanted
    std::string label;
    std::string description;
    std::string group;
    unsigned type = 0;
    boost::any defaultValue; // empty for none
    std::string widget;
    std::vector<std::pair<std::string, std::string>> options;
};

std::string translatedText(const std::string& key)
{
    if (key.empty())
        return {};
    // Not every text that stands for a key is one, and those that are not stay byte by byte.
    const QString text = QCoreApplication::translate("Ksx::Data::Desc::Filters", key.c_str());
    return text == QString::fromUtf8(key.c_str()) ? key : Orv::toLatin1(text);
}

// The shape in which defaults of inputs are stored.
boost::any inputValue(unsigned type, const boost::any& value)
{
    const boost::any shape = zeroOf(type);
    if (shape.type() == value.type())
        return isStorable(value) ? value : boost::any();
    if (const auto* number = boost::any_cast<UInt>(&value))
        if (shape.type() == typeid(Int1))
            return Int1{{static_cast<int>(*number)}};
    return {};
}

std::string numberOf(const boost::any& value, std::size_t otherwise)
{
    if (const auto* number = boost::any_cast<UInt>(&value))
        return std::to_string(*number);
    if (const auto* number = boost::any_cast<Int1>(&value))
        return std::to_string((*number)[0]);
    if (const auto* number = boost::any_cast<int>(&value))
        return std::to_string(*number);
    return std::to_string(otherwise);
}

// "0;first | 1;second"
std::string textOf(const std::vector<Data::Desc::ValueEntry>& entries)
{
    std::string text;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const Data::Desc::ValueEntry& entry = entries[i];
        const std::string name = translatedText(entry.nameKey);
        text += (i > 0 ? " | " : "") + numberOf(entry.value, i) + ';' +
                (name.empty() ? entry.identifier : name);
    }
    return text;
}

bool isLabel(const std::string& option)
{
    return option.compare(0, 5, "label") == 0;
}

Looks looksOf(const Data::Desc::Parameter& description, const std::string& group)
{
    Looks looks;
    looks.identifier = description.identifier.empty() ? translatedText(description.descKey)
                                                      : description.identifier;
    looks.label = translatedText(description.nameKey);
    looks.description = translatedText(description.descKey);
    looks.group = group.empty() ? description.extra("group") : group;
    looks.type = description.type;
    looks.defaultValue = inputValue(description.type, description.defaultValue);
    looks.widget = description.widget;
    std::map<std::string, std::string> options = description.extras;
    options.erase("group");
    for (auto& [name, value] : options)
        if (isLabel(name))
            value = translatedText(value);
    if (!description.entries.empty()) {
        options["editorID"] = DropDownList;
        options["parameters"] = textOf(description.entries);
        if (looks.widget.empty())
            looks.widget = DropDownList;
    }
    looks.options.assign(options.begin(), options.end());
    return looks;
}

Looks looksOf(const ParamInput& input)
{
    Looks looks;
    looks.identifier = input.identifier().get();
    looks.label = input.attributes().label().get();
    looks.description = input.attributes().description().get();
    looks.group = input.group().get();
    looks.type = input.type().value().get();
    looks.defaultValue = valueAs(looks.type, input.defaultValue().get());
    looks.widget = input.defaultWidget().name().get();
    for (const Option& option : input.defaultWidget().options())
        looks.options.emplace_back(option.name().get(), option.value().get());
    return looks;
}

std::string freeIdentifierFor(const ParamInput& input, const std::string& wanted)
{
    const auto* list = dynamic_cast<const Orv::Data::ContainerList<ParamInput>*>(input.getParent());
    if (list == nullptr)
        return wanted;
    return freeIdentifier(wanted, defaultInputIdentifier(), ParamInputNameExist(*list, &input));
}

void writeOptions(const ManipulatorStruct<DefaultWidget>& widget, const Looks& looks)
{
    std::vector<std::unique_ptr<BaseObject>> options;
    for (const auto& [name, value] : looks.options) {
        auto option = std::make_unique<Option>();
        option->name().assign(name);
        option->value().assign(value);
        options.push_back(std::move(option));
    }
    auto list = widget.options();
    list.clear();
    if (!options.empty())
        list.insert(0, std::move(options));
}

bool applyLooks(ManipulatorStruct<ParamInput> input, const DataPointerBoxMasterKey&,
                const Looks& looks)
{
    input.identifier().setIfChanged(freeIdentifierFor(*input.get(), looks.identifier));
    input.attributes().label().setIfChanged(looks.label);
    input.attributes().description().setIfChanged(looks.description);
    input.group().setIfChanged(looks.group);
    input.type().value().setIfChanged(looks.type);
    std::unique_ptr<BaseObject> constant;
    if (!looks.defaultValue.empty())
        constant = makeConstant(looks.type, looks.defaultValue);
    input.defaultValue().set(std::move(constant));
    input.defaultWidget().name().setIfChanged(looks.widget);
    writeOptions(input.defaultWidget(), looks);
    return true;
}

bool run(const ParamInput* input, Looks looks)
{
    const Orv::Data::DataPointerBox<ParamInput> box(input);
    return runEdit(box, std::move(looks), &applyLooks, QString()).has_value();
}

} // namespace

TweakInputController::TweakInputController(const ParamInput& input) : InputController(input) {}

bool TweakInputController::initFromDescription(const Data::Desc::Parameter& description,
                                               const std::string& group)
{
    return run(input(), looksOf(description, group));
}

bool TweakInputController::initFromInput(const ParamInput& source)
{
    return run(input(), looksOf(source));
}

} // namespace Ksx::Core
