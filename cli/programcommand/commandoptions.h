// What the options of all commands share.
#pragma once

#include <QString>
#include <QStringList>
#include <boost/program_options.hpp>
#include <string>

namespace ProgramCommand {

// Patterns that output options replace by what belongs to the input.
inline const char* const InputNamePattern = "{inputName}";
inline const char* const InputPathPattern = "{inputPath}";
inline const char* const InputGraphPattern = "{inputGraph}";

// The group of options "<command> I/O options" or the like; `kind` is the words behind the name.
boost::program_options::options_description optionGroup(const QString& command, const char* kind);

// A value with a default that the help does not print: its description tells it.
boost::program_options::typed_value<std::string>* silentDefault(const QString& value);

// Adds an option whose description is a text with %1 and so on replaced.
void addOption(boost::program_options::options_description& group, const char* name,
               const boost::program_options::value_semantic* value, const QString& description);

// The value of an option that holds one text; empty if it was not given.
QString optionText(const boost::program_options::variables_map& variables, const char* name);
QStringList optionTexts(const boost::program_options::variables_map& variables, const char* name);

// The texts that several commands have in common.
QString outputNameDescription(const QString& defaultName);
QString outputPathDescription();
QString filterPresetsDescription();

} // namespace ProgramCommand
