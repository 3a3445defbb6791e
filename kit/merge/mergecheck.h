// Finds what a merge has made unsound.
#pragma once

#include "ksx/kit/merge.h"
#include <vector>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Kit {

// Returns a conflict for each error of a merged package that neither of the sides has, such as a
// connection to a node that the other side removed. Opens dependencies.
std::vector<Conflict> newFaults(Data::Content::Package& merged, Data::Content::Package& ours,
                                Data::Content::Package& theirs, const QString& place,
                                const QStringList& presetsPaths);

} // namespace Ksx::Kit
