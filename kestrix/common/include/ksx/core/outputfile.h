// The names of the files that commands write.
#pragma once

#include <QString>
#include <optional>

namespace Ksx::Core {

// Patterns that the names of output files may have, in place of parts of the path of the input.
inline constexpr const char* InputNamePattern = "{inputName}";
inline constexpr const char* InputPathPattern = "{inputPath}";

// The name that an update gives to the file of a package, unless somebody asks for another one.
inline constexpr const char* UpdatedName = "{inputName}_updated";

// Returns the name of an output file without its ending: `pattern` with the base name of the input.
QString outputName(const QString& pattern, const QString& inputName);

// Returns the absolute path of an output file with the ending ".obl". `folder` is a pattern for the
// folder of the input, `inputPath`. Without it the file goes to the current folder. A name that is
// absolute itself wins over the folder.
QString outputFile(const std::optional<QString>& folder, const QString& inputPath,
                   const QString& name);

// Returns the file to which an update writes the package of the file `input`. Returns a null text if
// the pattern leaves it without a name.
QString updatedFile(const QString& namePattern, const std::optional<QString>& folder,
                    const QString& input);

} // namespace Ksx::Core
