// Checks the dependencies of a package and the data paths in it.
#pragma once

#include "ksx/kit/inventory.h"
#include <QStringList>
#include <vector>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Kit {

class FindingList;

// Adds dependencies that are missing, broken, double or never used, paths that lead nowhere, and
// graphs and functions that are instances of themselves. Opens the dependencies that paths lead
// into. `package` is not changed.
void checkReferences(Data::Content::Package& package, const std::vector<Dependency>& dependencies,
                     const QStringList& presetsPaths, FindingList& findings);

} // namespace Ksx::Kit
