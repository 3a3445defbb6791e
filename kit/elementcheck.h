// Checks the elements of a package file against the format.
#pragma once

#include <QString>

namespace Ksx::Kit {

class FindingList;

// Adds elements that are missing, unknown, double or of a bad value, with lines and columns. Ends
// where the file is no document any more, without a finding of its own. The file is of the current
// format.
void checkElements(const QString& file, FindingList& findings);

} // namespace Ksx::Kit
