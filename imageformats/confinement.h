// Taking rights from the process that decodes pictures.
#pragma once

#include <QtGlobal>

namespace Orv::ImageFormats {

struct ConfinementLimits
{
    quint64 processorSeconds;
    quint64 memory;  // address space, in bytes
    quint64 written; // the largest file that may grow, in bytes
};

// False under the address sanitizer, which reserves terabytes of addresses.
extern const bool IsMemoryLimited;

// From now on this process dies with the one that started it. It cannot open, start or connect
// anything, nor use more than the limits. Nothing takes this back. Where the kernel has no filter
// for system calls, the limits alone hold. Returns false if a limit cannot be set.
bool confine(const ConfinementLimits& limits);

} // namespace Orv::ImageFormats
