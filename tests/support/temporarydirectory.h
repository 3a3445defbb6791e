// A directory of a test's own.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace TestSupport {

// Empty at first, gone with everything in it at the end, whatever permissions were set meanwhile.
// Names are bytes, relative to the directory, unless they begin with "/".
class TemporaryDirectory
{
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    // Without a symbolic link in it.
    std::string path() const { return m_path.string(); }
    std::string path(const std::string& name) const { return (m_path / name).string(); }

    // Makes the directories on the way. Answers the path.
    std::string write(const std::string& name, const std::string& bytes) const;
    // The bytes of a file; fails the test if there is none.
    std::string read(const std::string& name) const;
    bool exists(const std::string& name) const;
    std::string makeDirectory(const std::string& name) const;
    std::string makeLink(const std::string& name, const std::string& target) const;
    // As in chmod.
    void setMode(const std::string& name, unsigned mode) const;
    unsigned mode(const std::string& name) const;

    // The names of everything below, directories left out, sorted and with blanks between them.
    std::string files() const;

private:
    std::filesystem::path m_path;
};

} // namespace TestSupport
