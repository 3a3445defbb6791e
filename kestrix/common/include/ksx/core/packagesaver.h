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
// workers: packages that go to one file are written in their order. Belongs to one thread, which
// neither edits nor destroys the packages meanwhile. Whoever hears of the new versions that a
// package gets hears of them in that thread.
class PackageSaver
{
public:
    struct Result
    {
        bool isSaved = false;
        QString keptCopy; // see savePackage()
    };

    // Nothing is written before the first call of next(), and with fewer than two workers all is
    // written in that function.
    explicit PackageSaver(const QDir& presetsDir, unsigned workers = Orv::Core::availableCores());

    // Adds a package that goes to the file `path`.
    void add(const Data::Content::Package& package, const QString& path);
    // Waits for the first of the packages that were added and not yet returned. There must be one.
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
