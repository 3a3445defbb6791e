// Where the sources and the built tool are.
#pragma once

#include <string>

namespace TestSupport {

// Returns the path of a file or folder of the source tree, such as "examples/old/grain.obl".
std::string sourcePath(const std::string& name);
// Returns the path of a file or folder that the build makes for the tests.
std::string buildPath(const std::string& name);
// Returns the path of the built tool.
std::string toolPath();
// Returns the path of the built tool ksx.
std::string ksxPath();

} // namespace TestSupport
