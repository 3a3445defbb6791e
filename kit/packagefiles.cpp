#include "ksx/kit/packagefiles.h"

#include "data/filename.h"
#include <QSet>
#include <algorithm>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace Ksx::Kit {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view Endings[] = {".obl", ".oblar", ".oblasm"};

bool isPackageName(const std::string& name)
{
    return std::any_of(std::begin(Endings), std::end(Endings), [&](std::string_view ending) {
        return name.size() > ending.size() &&
               name.compare(name.size() - ending.size(), ending.size(), ending) == 0;
    });
}

bool isHidden(const std::string& name)
{
    return !name.empty() && name.front() == '.';
}

// One search below a folder.
class Search
{
public:
    Search(std::vector<std::string>& files, std::vector<Failure>& failures)
        : m_files(files), m_failures(failures)
    {}

    void searchBelow(const fs::path& folder)
    {
        m_folders.push_back(folder);
        while (!m_folders.empty()) {
            const fs::path next = std::move(m_folders.back());
            m_folders.pop_back();
            searchIn(next);
        }
    }

private:
    void searchIn(const fs::path& folder)
    {
        std::error_code error;
        fs::directory_iterator place(folder, error);
        for (; !error && place != fs::directory_iterator(); place.increment(error))
            look(*place);
        if (error)
            m_failures.push_back(
                {Orv::fromBytes(folder.native()), QStringLiteral("it cannot be searched: ") +
                                                      QString::fromStdString(error.message())});
    }

    void look(const fs::directory_entry& entry)
    {
        const std::string name = entry.path().filename().native();
        std::error_code error; // an entry of which nothing is known is no folder
        if (!entry.is_directory(error)) {
            if (isPackageName(name))
                m_files.push_back(entry.path().native());
        } else if (!entry.is_symlink(error) && !isHidden(name)) {
            m_folders.push_back(entry.path());
        }
    }

    std::vector<std::string>& m_files;
    std::vector<Failure>& m_failures;
    std::vector<fs::path> m_folders; // that are still to be searched
};

bool isFolder(const std::string& name)
{
    std::error_code error;
    // A name with a null byte would be cut there.
    return name.find('\0') == std::string::npos && fs::is_directory(fs::path(name), error);
}

} // namespace

PackageFiles findPackageFiles(const QStringList& names)
{
    PackageFiles found;
    QSet<QString> known;
    for (const QString& name : names) {
        const std::string bytes = Orv::toBytes(name);
        std::vector<std::string> files;
        if (isFolder(bytes)) {
            Search(files, found.failures).searchBelow(fs::path(bytes));
            std::sort(files.begin(), files.end());
        } else {
            files.push_back(bytes);
        }
        for (const std::string& file : files) {
            const QString path = Orv::fromBytes(file);
            if (!known.contains(path))
                found.files.append(path);
            known.insert(path);
        }
    }
    return found;
}

} // namespace Ksx::Kit
