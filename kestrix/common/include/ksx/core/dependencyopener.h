// Opens packages with everything that they depend on.
#pragma once

#include "core/orderedtasks.h"
#include "ksx/core/packageslistmanager.h"
#include "ksx/core/updatestage.h"
#include <QHash>
#include <QStringList>
#include <initializer_list>
#include <list>
#include <memory>
#include <unordered_set>
#include <utility>
#include <vector>

namespace Orv::Core {
class MessageNode;
} // namespace Orv::Core

namespace Ksx::Core {

// The entries that one opening has met so far. Entries never move. DependencyOpener::open() makes
// its own; only callers of openEntry() need one.
class LoadedEntries
{
public:
    using Entry = PackagesListManager::DependencyEntry;

    // Adds the entries in their order.
    LoadedEntries(std::initializer_list<Entry> entries = {});
    LoadedEntries(const LoadedEntries&) = delete;
    LoadedEntries& operator=(const LoadedEntries&) = delete;

    // Returns the entries in the order in which they came.
    const std::list<Entry>& all() const { return m_entries; }
    // Returns false, and adds nothing, if there is an equal entry.
    bool add(const Entry& entry);
    // Returns the first entry of the file. Returns null if there is none.
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

// Opens package files and then their dependencies, breadth first and each file once. Attaches the
// packages to the list of a manager. This is the usual way to open packages. It prints nothing.
//
// The manager must outlive the opener. An opener belongs to the thread of its manager. It may be
// used for one opening after another.
//
// Files are read by worker threads, some files ahead. The result is the same for any number of
// workers: packages, reports, failures and their order, and the order in which uids are given.
// Importers, updaters and sinks of the DiagnosticLog are called in these threads.
//
//     DependencyOpener opener(manager, {presetsFolder});
//     Orv::Core::MessageNode report;
//     if (!opener.open({"wood.obl"}, &report))
//         throw std::runtime_error(report.toText().toStdString());
//     for (const auto& package : manager.openPackages())
//         for (const auto& graph : collectGraphs(*package))
//             names.push_back(graph->identifier().get());
//     savePackage(*manager.packageForPath("wood.obl"), "new.obl", QDir(presetsFolder));
class DependencyOpener
{
public:
    using Entry = PackagesListManager::DependencyEntry;

    // The reaction of an opening to a file that fails.
    enum class OnFailure
    {
        // Opens no further file and attaches nothing.
        Stop,
        // Opens and attaches all other files.
        GoOn,
    };

    // A file that could not be opened.
    struct Failure
    {
        // The path as it was given. Canonical if the file exists.
        QString filename;
        // True for a file that another package needs. False for one that was asked for.
        bool isDependency = false;
        // The first error below the report. Empty without a report. See failureReason().
        QString error = {};
    };

    // "obl://" references lead into the first of `presetsPaths`. They lead into the current
    // directory if there is none.
    DependencyOpener(PackagesListManager& manager, const QStringList& presetsPaths,
                     OnFailure onFailure = OnFailure::Stop);

    // Chooses whether dependencies are opened. They are at first. Without them only the files
    // themselves are opened.
    void setFollowsDependencies(bool follows) { m_followsDependencies = follows; }

    // Chooses whether a file that is open already is taken as it is. It is read and attached again at
    // first.
    void setTakesOpen(bool takes) { m_takesOpen = takes; }

    // Sets the number of threads that read files. At first there are as many as the process may use
    // cores. With fewer than two, and for a single file, the thread of the opener reads.
    void setWorkers(unsigned workers) { m_workers = workers; }

    // Lets somebody follow the updates of old files. The function may be called by several threads at
    // a time, for one file each.
    void setStageFunction(StageFunction onStage) { m_onStage = std::move(onStage); }

    // Opens the files and attaches them by one undoable command. Old files are brought to the
    // current format in memory; no file is changed and no copy is made. A file that an earlier
    // opening attached is attached again, unless setTakesOpen() says otherwise.
    //
    // Returns true if all files were opened. Returns false if one failed. With OnFailure::Stop
    // nothing is attached then, and with OnFailure::GoOn all other packages are. The reasons are
    // errors below `report`, which may be null.
    bool open(const QStringList& paths, Orv::Core::MessageNode* report = nullptr);
    // Returns the files that failed in the last call of open(), in the order of the attempts.
    const std::vector<Failure>& failures() const { return m_failures; }

    // Opens the package of one entry and gives it to the manager to keep. Takes the package of an
    // entry of `loaded` for the same file instead. Makes the file name of the entry canonical if
    // the file exists. Does nothing for an entry that has its package. Returns false on failure.
    bool openEntry(Entry& entry, const LoadedEntries& loaded,
                   Orv::Core::MessageNode* report = nullptr) const;

private:
    struct Opening;

    void locate(Entry& entry) const;
    bool visit(Opening& opening) const;
    void readAhead(Opening& opening) const;
    std::unique_ptr<Data::Content::Package> read(const QString& filename,
                                                 Orv::Core::MessageNode* report) const;

    PackagesListManager& m_manager;
    QStringList m_presetsPaths;
    OnFailure m_onFailure;
    unsigned m_workers = Orv::Core::availableCores();
    bool m_followsDependencies = true;
    bool m_takesOpen = false;
    StageFunction m_onStage;
    std::vector<Failure> m_failures;
};

} // namespace Ksx::Core
