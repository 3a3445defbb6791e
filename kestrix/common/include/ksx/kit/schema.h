// The format of package files as schemas, by which tools for XML check and complete packages.
#pragma once

#include <QByteArray>

namespace Ksx::Kit {

// Returns the current format as a schema of RELAX NG, in its XML form. Members come in any order,
// as in files that are read. An element that the format does not know is a fault: the reader skips
// it, and it is lost when the package is saved.
QByteArray relaxNgSchema();

// Returns the same as an XML Schema, version 1.0.
QByteArray xmlSchema();

} // namespace Ksx::Kit
