#include "packageloading.h"

#include "console.h"
#include "core/fileplace.h"
#include "data/content/package.h"
#include "data/xmlvalueconverter.h"
#include "ksx/core/packagereader.h"
#include <QDir>
#include <QUrl>
#include <algorithm>

namespace {

using Ksx::Core::PackagesListManager;
using Entry = PackagesListManager::DependencyEntry;

const char* const PresetsPrefix = "obl://";

std::list<QDir> presetsDirectories(const QStringList& paths)
{
    if (paths.isEmpty())
        return {QDir::current()};
    return {paths.begin(), paths.end()};
}

// Keeps an entry that is new, and what its package depends on.
void noteLoaded(const Entry& entry, PackagesListManager& manager, bool followDependencies,
                std::list<Entry>& loaded, std::list<Entry>& pending)
{
    if (std::find(loaded.rbegin(), loaded.rend(), entry) != loaded.rend())
        return;
    loaded.push_back(entry);
    if (followDependencies)
        pending.splice(pending.end(), manager.dependenciesOf(entry));
}

} // namespace

int loadPackages(PackagesListManager& manager, const QStringList& paths,
                 const QStringList& presetsPaths, bool followDependencies)
{
    std::list<Entry> loaded;
    std::list<Entry> pending;
    for (const QString& path : paths) {
        Entry entry;
        entry.filename = path;
        if (const int error = loadPackageEntry(entry, manager, loaded, presetsPaths)) {
            printError(QStringLiteral("Cannot load: ") + entry.filename);
            return error;
        }
        noteLoaded(entry, manager, followDependencies, loaded, pending);
    }
    while (!pending.empty()) {
        Entry entry = pending.front();
        pending.pop_front();
        if (const int error = loadPackageEntry(entry, manager, loaded, presetsPaths)) {
            printError(QStringLiteral("Cannot load dependency: ") + entry.filename);
            return error;
        }
        noteLoaded(entry, manager, followDependencies, loaded, pending);
    }
    manager.finishLoading(loaded);
    return 0;
}

int loadPackageEntry(Entry& entry, PackagesListManager& manager, const std::list<Entry>& loaded,
                     const QStringList& presetsPaths)
{
    if (entry.package)
        return 0;
    const QString canonical = Orv::Core::canonicalPath(entry.filename);
    if (!canonical.isEmpty())
        entry.filename = canonical;
    for (const Entry& other : loaded) {
        if (other.filename == entry.filename) {
            entry.package = other.package;
            return 0;
        }
    }
    const Orv::Data::XmlValueConverterURLPrefixReplacement presets(
        PresetsPrefix, presetsDirectories(presetsPaths));
    const Ksx::Core::PackageReader::Converters converters{&presets};
    auto package = Ksx::Core::PackageReader::open(QUrl::fromLocalFile(entry.filename), nullptr, {},
                                                  {}, &converters, nullptr, true);
    if (package == nullptr)
        return 1;
    entry.package = manager.keep(std::move(package));
    return 0;
}
