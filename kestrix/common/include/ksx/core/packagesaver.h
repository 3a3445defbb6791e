// Writes several package files, on several threads.
#pragma once

#include "core/orderedtasks.h"
#include <QDir>
#include <QString>
#include <deque>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Saves packages as savePackage() does, and leaves the same files behind whatever the number of
// workers. Packages that go to one file are written in their order.
//
// Belongs to the thread of the documents, which calls all functions. It must neither edit nor
// destroy the packages until next() has returned their results. Each package gets the newest
// versions before it is written. Listeners hear of that change in the thread that calls next().
//
//     PackageSaver saver(presetsDir);
//     for (const auto& [package, path] : targets)
//         saver.add(*package, path);
//     for (const auto& target : targets)
//         if (!saver.next().isSaved)
//             report(target);
class PackageSaver
{
public:
    // The result for one package.
    struct Result
    {
        // Whether the file was saved as a whole.
        bool isSaved = false;
        // The path of a copy of the old bytes, if these could not be put back. Else a null text.
        QString keptCopy;
    };

    // References into `presetsDir` become "obl://" names: see savePackage(). Nothing is written
    // before the first call of next(). With fewer than two workers, next() writes everything
    // itself.
    explicit PackageSaver(const QDir& presetsDir, unsigned workers = Orv::Core::availableCores());

    // Adds a package that goes to the file `path`. The package must live until its result has been
    // returned.
    void add(const Data::Content::Package& package, const QString& path);

    // Waits until the first package without a result is written, and returns its result. There must
    // be one. Passes on exceptions of the writing.
    Result next();

private:
    struct Job
    {
        const Data::Content::Package& package;
        QString path;
        QString place = {};    // the file that is written, null while it is not known
        bool isShared = false; // the file cannot be told from others by its path
        Result result = {};
    };

    void begin();
    bool canBegin(const Job& job) const;

    QDir m_presetsDir;
    unsigned m_workers;
    std::deque<Job> m_jobs;          // a job does not move while others come and go at the ends
    Orv::Core::OrderedTasks m_tasks; // of the first jobs
};

} // namespace Ksx::Core
