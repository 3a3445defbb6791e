// What the options of all commands share.
#pragma once

#include "ksx/core/outputfile.h"
#include <QString>
#include <QStringList>
#include <boost/program_options.hpp>
#include <optional>
#include <string>

namespace ProgramCommand {

// Patterns that output options replace by what belongs to the input.
using Ksx::Core::InputNamePattern;
using Ksx::Core::InputPathPattern;
inline const char* const InputGraphPattern = "{inputGraph}";

// Options that several commands have.
inline const char* const PresetsPathOption = "presets-path";
inline const char* const OutputPathOption = "output-path";
inline const char* const OutputNameOption = "output-name";

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

// Where "obl://" references lead to.
struct Presets
{
    QString directory; // as the option has it; empty, which stands for the current one, without it
    QStringList paths; // absolute; empty without the option
};
// What "presets-path" says; it is told on standard output.
Presets announcePresets(const boost::program_options::variables_map& variables);

// "output-name" with `inputName` for its pattern; empty if the option holds nothing.
QString outputName(const boost::program_options::variables_map& variables,
                   const QString& inputName);
// "output-path" as it was given.
std::optional<QString> outputFolder(const boost::program_options::variables_map& variables);
// "output-path" with `inputPath` for its pattern, or the current directory, and in it the file of
// that base name.
QString targetFile(const boost::program_options::variables_map& variables, const QString& inputPath,
                   const QString& baseName);

// The texts that several commands have in common.
QString outputNameDescription(const QString& defaultName);
QString outputPathDescription();
QString filterPresetsDescription();

} // namespace ProgramCommand
