// Whether a package that was written hangs together: with itself, and with what it refers to.
#pragma once

#include <string>
#include <vector>

namespace TestSupport {

// What is wrong in the file of a package: uids and names that stand twice, references inside it that
// meet nothing, files that are not there, paths that reach no object of the package that they name.
// The packages that it depends on are opened as the tool opens them, and are not checked themselves.
// `presets` is the directory to which "obl://" leads; without it such a file is one that is missing.
std::vector<std::string> complaintsAbout(const std::string& path, const std::string& presets = {});

// Fails the test with each complaint.
void expectWhole(const std::string& path, const std::string& presets = {});

} // namespace TestSupport
