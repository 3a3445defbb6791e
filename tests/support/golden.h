// Golden files: expected results that lie below tests/golden.
#pragma once

#include <string>

namespace TestSupport {

// With it, expectGolden() writes what it is given; the difference is then reviewed by hand.
void setUpdateGolden(bool isOn);

// The whole content of a file; fails the test if it cannot be read.
std::string readFile(const std::string& path);
// The path of a file below tests/golden.
std::string goldenPath(const std::string& name);
// Compares byte by byte with the golden file of that name.
void expectGolden(const std::string& name, const std::string& actual);

} // namespace TestSupport
