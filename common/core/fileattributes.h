// Owner, permissions and extended attributes of a file that takes the place of another one.
#pragma once

#include "core/descriptor.h"
#include <string>

struct stat;

namespace Orv::Core {

// Gives `file` what the file at `path`, whose status is `former`, has of these. A right that the
// process lacks is no failure: the file stays the process's own then, and nobody gets a permission
// by that. Returns false for every other failure, such as that of the disk.
bool takeAttributes(const Descriptor& file, const std::string& path, const struct stat& former);

} // namespace Orv::Core
