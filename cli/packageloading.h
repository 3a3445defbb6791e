// Opens packages with everything that they depend on; what all commands begin with.
#pragma once

#include "ksx/core/packageslistmanager.h"
#include <QHash>
#include <QStringList>
#include <initializer_list>
#include <list>
#include <unordered_set>

// What one load has opened so far.
class LoadedEntries
{
public:
    using Entry = Ksx::Core::PackagesListManager::DependencyEntry;

    LoadedEntries(std::initializer_list<Entry> entries = {});
    LoadedEntries(const LoadedEntries&) = delete;
    LoadedEntries& operator=(const LoadedEntries&) = delete;

    // In the order in which they came.
    const std::list<Entry>& all() const { return m_entries; }
    // False, and nothing added, if there is an equal entry.
    bool add(const Entry& entry);
    // The first entry of the file. Null if there is none.
    const Entry* findByFile(const QString& filename) const { return m_byFile.value(filename); }

private:
    struct Hash
    {
        std::size_t operator()(const Entry* entry) const;
    };
    struct Equal
    {
        bool operator()(const Entry* a, const Entry* b) const { return *a == *b; }
    };

    std::list<Entry> m_entries;
    std::unordered_set<const Entry*, Hash, Equal> m_known;
    QHash<QString, const Entry*> m_byFile;
};

// Opens the files and, if `followDependencies` is set, their dependencies breadth first, each file
// once, and attaches them to the manager's list. "obl://" references lead into the first of
// `presetsPaths`, or into the current directory without one. 0 on success; otherwise an error line
// has been written, and nothing has been attached.
int loadPackages(Ksx::Core::PackagesListManager& manager, const QStringList& paths,
                 const QStringList& presetsPaths, bool followDependencies);

// Opens the package of one entry, or takes it over from an entry of `loaded` for the same file. The
// entry's file name becomes canonical if the file exists. Answers 0, or 1 without any message.
int loadPackageEntry(Ksx::Core::PackagesListManager::DependencyEntry& entry,
                     Ksx::Core::PackagesListManager& manager, const LoadedEntries& loaded,
                     const QStringList& presetsPaths);
