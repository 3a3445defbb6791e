#include "graph/inputparameter.h"

#include "content/constantvalue.h"
#include "data/content/paraminput.h"
#include <QString>
#include <QStringList>

namespace Ksx::Core {

namespace {

using Data::Content::Option;
using Data::Desc::ValueEntry;

const char* const DropDownList = "dropdownlist";

ValueEntry entryOf(const QString& text, unsigned index)
{
    ValueEntry entry;
    bool hasNumber = false;
    const auto semicolon = text.indexOf(QLatin1Char(';'));
    const unsigned number = semicolon < 0 ? 0 : text.left(semicolon).trimmed().toUInt(&hasNumber);
    const QString name = hasNumber ? text.mid(semicolon + 1) : text;
    entry.identifier = name.toLatin1().toStdString();
    entry.nameKey = entry.identifier;
    entry.descKey = entry.identifier;
    entry.value = boost::any(hasNumber ? number : index);
    return entry;
}

std::vector<ValueEntry> entriesOf(const std::string& parameters)
{
    std::vector<ValueEntry> entries;
    if (parameters.empty())
        return entries;
    const QString text = QString::fromLatin1(parameters.data(), int(parameters.size()));
    const QStringList parts = text.split(QStringLiteral(" | "));
    for (const QString& part : parts)
        entries.push_back(entryOf(part, static_cast<unsigned>(entries.size())));
    return entries;
}

} // namespace

Data::Desc::Parameter parameterOfInput(const Data::Content::ParamInput& input)
{
    Data::Desc::Parameter parameter;
    parameter.identifier = input.identifier().get();
    parameter.type = input.type().value().get();
    parameter.widget = input.defaultWidget().name().get();
    const std::string& label = input.attributes().label().get();
    parameter.nameKey = label.empty() ? parameter.identifier : label;
    parameter.descKey = input.attributes().description().get();
    parameter.defaultValue = parameterValueAs(parameter.type, input.defaultValue().get());
    if (parameter.defaultValue.empty())
        parameter.defaultValue = Data::Desc::emptyValueOf(parameter.type);
    for (const Option& option : input.defaultWidget().options())
        parameter.extras.emplace(option.name().get(), option.value().get());
    if (parameter.widget == DropDownList || parameter.extra("editorID") == DropDownList)
        parameter.entries = entriesOf(parameter.extra("parameters"));
    return parameter;
}

} // namespace Ksx::Core
