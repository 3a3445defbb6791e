// The parts of packages that inventories and checks have in common.
#pragma once

#include "ksx/kit/inventory.h"
#include <QString>
#include <QStringList>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Orv::Data {
class BaseObject;
} // namespace Orv::Data

namespace Ksx::Data::Content {
class Package;
class ParamInput;
class Resource;
} // namespace Ksx::Data::Content

namespace Ksx::Kit {

// The name by which a package depends on itself.
constexpr const char* ItselfName = "?himself";

// Returns the text of a constant, whose structure has the value as its first member.
std::string textOfConstant(const Orv::Data::BaseObject& constant);

// Returns a text of a document, which has 8 bits.
QString latinText(std::string_view text);

Input inputOf(const Data::Content::ParamInput& input);
Resource resourceOf(const Data::Content::Resource& resource);

// The head has the names of the file, and the package has the paths to which they lead. Updates
// keep the order of dependencies, and add new ones behind them, which are left out. `file` is that
// of the package.
std::vector<Dependency> dependenciesOf(const Data::Content::Package& package,
                                       const PackageHead& head, const QString& file);

// Opens a package without its dependencies, and adds the versions of the steps that bring it up to
// `updates`. Returns null on failure, with a sentence in `reason`.
std::unique_ptr<Data::Content::Package> openPackage(const QString& file,
                                                    const QStringList& presetsPaths,
                                                    QStringList& updates, QString& reason);

// Opens a package as one that lies at `place`: see Core::PackageReader. Names of the presets library
// stay as they are if there are no `presetsPaths`.
std::unique_ptr<Data::Content::Package> openVersionAt(const QString& place, const QString& file,
                                                      const QStringList& presetsPaths,
                                                      QString& reason);

// Returns the path that a file reference leads to. References other than names of the presets
// library are returned as they are.
QString pathOfReference(const QString& reference, const QStringList& presetsPaths);

} // namespace Ksx::Kit
