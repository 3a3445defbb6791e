// Where the parts of the library are that are loaded or started at need.
#pragma once

#include <QString>

namespace Orv::Core {

// Returns the path of a module or helper program, such as "libksx_archives.so". It is looked for
// beside the executable, in the folder of modules beside the library that holds this function, and
// in the one of an installation to which the executable belongs. So a tree can be moved, and no
// variable of the environment is asked for. Returns the place beside the executable if there is none.
// Wants the application object. May be called in any thread.
QString modulePlace(const QString& fileName);

} // namespace Orv::Core
