#include "support/temporarydirectory.h"

#include "support/golden.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <system_error>

namespace TestSupport {

namespace {

namespace fs = std::filesystem;

std::string madeDirectory()
{
    std::string pattern = (fs::temp_directory_path() / "kestrix-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(), pattern);
    return pattern;
}

} // namespace

TemporaryDirectory::TemporaryDirectory() : m_path(fs::canonical(madeDirectory()))
{
    // Tests also run the tool as another user.
    fs::permissions(m_path, static_cast<fs::perms>(0755));
}

TemporaryDirectory::~TemporaryDirectory()
{
    std::error_code ignored;
    std::vector<fs::path> directories{m_path};
    for (std::size_t i = 0; i < directories.size(); ++i) {
        const fs::path directory = directories[i];
        fs::permissions(directory, fs::perms::owner_all, fs::perm_options::add, ignored);
        for (const auto& entry : fs::directory_iterator(directory, ignored))
            if (entry.is_directory(ignored) && !entry.is_symlink(ignored))
                directories.push_back(entry.path());
    }
    fs::remove_all(m_path, ignored);
}

std::string TemporaryDirectory::write(const std::string& name, const std::string& bytes) const
{
    const fs::path file = m_path / name;
    fs::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream << bytes;
    EXPECT_TRUE(stream.good()) << "cannot write " << file;
    return file.string();
}

std::string TemporaryDirectory::read(const std::string& name) const
{
    return readFile(path(name));
}

bool TemporaryDirectory::exists(const std::string& name) const
{
    return fs::exists(fs::symlink_status(m_path / name));
}

std::string TemporaryDirectory::makeDirectory(const std::string& name) const
{
    fs::create_directories(m_path / name);
    return path(name);
}

std::string TemporaryDirectory::makeLink(const std::string& name, const std::string& target) const
{
    fs::create_directories((m_path / name).parent_path());
    fs::create_symlink(target, m_path / name);
    return path(name);
}

void TemporaryDirectory::setMode(const std::string& name, unsigned mode) const
{
    fs::permissions(m_path / name, static_cast<fs::perms>(mode));
}

unsigned TemporaryDirectory::mode(const std::string& name) const
{
    return static_cast<unsigned>(fs::status(m_path / name).permissions());
}

std::string TemporaryDirectory::files() const
{
    std::vector<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(m_path))
        if (entry.is_symlink() || !entry.is_directory())
            names.push_back(entry.path().lexically_relative(m_path).string());
    std::sort(names.begin(), names.end());
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : " ") + name;
    return text;
}

} // namespace TestSupport
