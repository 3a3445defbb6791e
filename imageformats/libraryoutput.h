// What FreeImage and its libraries have to say.
#pragma once

namespace Orv::ImageFormats {

// From now on none of it reaches the terminal. To be called before FreeImage reads or writes; what
// comes after the first call changes nothing.
void silenceLibraries();

} // namespace Orv::ImageFormats
