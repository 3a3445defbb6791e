#include "batch/unitplacement.h"

#include "batch/linedjson.h"
#include "batch/statefolder.h"
#include "core/descriptor.h"
#include "core/fileplace.h"
#include "core/filesaver.h"
#include "core/regularfile.h"
#include "data/filename.h"
#include "ksx/kit/batchrun.h"
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace Ksx::Kit {

namespace {

namespace fs = std::filesystem;

constexpr int JournalVersion = 1;

// A result, and what takes part in its placement. A file has one of its two names or both, so that
// the names tell how far a placement has come.
struct Entry
{
    QString output;
    // Where the new result waits, and where it goes to.
    std::string staged;
    std::string place;
    // The second name of the former result, if there is one.
    std::string former;
    bool replaces;
};

std::string parentOf(const std::string& path)
{
    return fs::path(path).parent_path();
}

// The answer of the system about a name. Whoever takes an error for a missing file would forget that
// file.
enum class Answer
{
    No,
    Yes,
    Unknown,
};

Answer isThere(const std::string& path)
{
    struct stat status = {};
    if (lstat(path.c_str(), &status) == 0)
        return Answer::Yes;
    return errno == ENOENT || errno == ENOTDIR ? Answer::No : Answer::Unknown;
}

// Tells whether both names are of one file. Both are there as a rule.
Answer isOneFile(const std::string& a, const std::string& b)
{
    struct stat first = {};
    struct stat second = {};
    if (lstat(a.c_str(), &first) != 0 || lstat(b.c_str(), &second) != 0)
        return errno == ENOENT || errno == ENOTDIR ? Answer::No : Answer::Unknown;
    return first.st_dev == second.st_dev && first.st_ino == second.st_ino ? Answer::Yes
                                                                          : Answer::No;
}

// How far a result has come.
enum class Step
{
    Staged,
    // It was taken back in part, and has both names.
    Both,
    Placed,
    Unknown,
};

bool makeFolder(const std::string& folder)
{
    std::error_code error;
    fs::create_directories(folder, error);
    return !error;
}

// Returns the sentence for the last error of the system.
QString systemReason()
{
    return QString::fromStdString(std::generic_category().message(errno));
}

class Placement
{
public:
    Placement(const BatchPlan& plan, const QString& journal)
        : m_plan(plan), m_folder(stateFolder(plan)), m_journal(m_folder + '/' + journal)
    {}

    // Adds a result that may take the place of a former one.
    void add(const QString& output)
    {
        add(output, true);
        m_entries.back().replaces = isThere(m_entries.back().place) != Answer::No;
    }

    // Adds the results of a placement that has begun. Returns false if its journal cannot be read.
    bool addJournal()
    {
        Orv::Core::RegularFile file(m_journal);
        if (!file.open(QIODevice::ReadOnly))
            return false;
        const QJsonObject journal = QJsonDocument::fromJson(file.readAll()).object();
        if (file.hasFailed() || journal["ksx"].toInt() != JournalVersion)
            return false;
        const QJsonArray outputs = journal["outputs"].toArray();
        for (const auto& output : outputs) {
            const QJsonObject entry = output.toObject();
            add(entry["output"].toString(), entry["replaces"].toBool());
        }
        return true;
    }

    // Returns a sentence on failure. Nothing has changed in the target then.
    QString begin()
    {
        for (const Entry& entry : m_entries)
            if (QString reason = prepare(entry); !reason.isEmpty()) {
                removeFormers();
                return reason;
            }
        // One result needs none: it is there or not.
        if (m_entries.size() == 1 || writeJournal())
            return {};
        removeFormers();
        return QStringLiteral("the file %1 cannot be written").arg(m_journal);
    }

    // Makes the second names again that a placement lacks which was taken back in part.
    bool beginAgain() const
    {
        return std::all_of(m_entries.begin(), m_entries.end(), [](const Entry& entry) {
            return stepOf(entry) != Step::Staged || prepare(entry).isEmpty();
        });
    }

    // Returns a sentence on failure. Some results may be in their places then.
    QString complete() const
    {
        for (const Entry& entry : m_entries)
            if (!hasPlace(entry))
                return QStringLiteral("the result %1 cannot take its place: %2")
                    .arg(Orv::fromBytes(entry.place), systemReason());
        return areFoldersSynced() ? QString() : QStringLiteral("its folders cannot be synced");
    }

    // Undoes complete(). Returns false on failure.
    bool takeBack() const
    {
        bool isBack = true;
        for (const Entry& entry : m_entries)
            isBack = takeBack(entry) && isBack;
        return areFoldersSynced() && isBack;
    }

    // Forgets the placement, and then the former results. A journal that comes back when the power
    // was lost has nothing to complete.
    void finish() const
    {
        unlink(Orv::toBytes(m_journal).c_str());
        removeFormers();
    }

private:
    void add(const QString& output, bool replaces)
    {
        const QString target = QDir::cleanPath(m_plan.options.target + '/' + output);
        const QString real = Orv::Core::realPath(target);
        m_entries.push_back({output, Orv::toBytes(stagedPath(m_plan, output)),
                             Orv::toBytes(real.isEmpty() ? target : real),
                             Orv::toBytes(m_folder + QStringLiteral("/former/") + output),
                             replaces});
    }

    // Returns a sentence on failure.
    static QString prepare(const Entry& entry)
    {
        const QString place = Orv::fromBytes(entry.place);
        if (!makeFolder(parentOf(entry.place)) || !makeFolder(parentOf(entry.former)))
            return QStringLiteral("the folder of %1 cannot be made").arg(place);
        struct stat folder = {};
        struct stat staged = {};
        if (stat(parentOf(entry.place).c_str(), &folder) != 0 ||
            lstat(entry.staged.c_str(), &staged) != 0)
            return QStringLiteral("the result for %1 is not there any more").arg(place);
        if (folder.st_dev != staged.st_dev)
            return QStringLiteral("%1 is on another file system than the target").arg(place);
        if (access(parentOf(entry.place).c_str(), W_OK) != 0)
            return QStringLiteral("the folder of %1 cannot be written").arg(place);
        return entry.replaces ? keepFormer(entry) : QString();
    }

    static QString keepFormer(const Entry& entry)
    {
        const QString place = Orv::fromBytes(entry.place);
        struct stat former = {};
        if (lstat(entry.place.c_str(), &former) != 0 || !S_ISREG(former.st_mode))
            return QStringLiteral("%1 is no file").arg(place);
        if (isOneFile(entry.former, entry.place) == Answer::Yes)
            return {};
        unlink(entry.former.c_str());
        if (!Orv::Core::takeAttributesOf(Orv::fromBytes(entry.staged), place) ||
            link(entry.place.c_str(), entry.former.c_str()) != 0)
            return QStringLiteral("the former file %1 cannot be kept: %2")
                .arg(place, systemReason());
        return {};
    }

    static Step stepOf(const Entry& entry)
    {
        const Answer waits = isThere(entry.staged);
        if (waits == Answer::No)
            return Step::Placed;
        const Answer isOne = isOneFile(entry.staged, entry.place);
        if (waits == Answer::Unknown || isOne == Answer::Unknown)
            return Step::Unknown;
        return isOne == Answer::Yes ? Step::Both : Step::Staged;
    }

    // Puts a result into its place unless it is there. Returns false on failure.
    static bool hasPlace(const Entry& entry)
    {
        switch (stepOf(entry)) {
        case Step::Staged:
            return rename(entry.staged.c_str(), entry.place.c_str()) == 0;
        case Step::Both:
            return unlink(entry.staged.c_str()) == 0;
        case Step::Placed:
            return true;
        default:
            return false;
        }
    }

    // Leaves each step in a state from which complete() can go on.
    static bool takeBack(const Entry& entry)
    {
        const Step step = stepOf(entry);
        if (step == Step::Staged || step == Step::Unknown)
            return step == Step::Staged;
        if (!entry.replaces)
            return rename(entry.place.c_str(), entry.staged.c_str()) == 0;
        return isThere(entry.former) == Answer::Yes &&
               (step == Step::Both || link(entry.place.c_str(), entry.staged.c_str()) == 0) &&
               rename(entry.former.c_str(), entry.place.c_str()) == 0;
    }

    bool writeJournal() const
    {
        Orv::Core::FileSaver saver(m_journal);
        if (!saver.open(QIODevice::WriteOnly))
            return false;
        LinedJson journal(saver);
        journal.add("ksx", JournalVersion);
        journal.beginList("outputs");
        for (const Entry& entry : m_entries)
            journal.addItem({{"output", entry.output}, {"replaces", entry.replaces}});
        journal.endList();
        return journal.finish() && saver.commit();
    }

    bool areFoldersSynced() const
    {
        QSet<QString> folders;
        for (const Entry& entry : m_entries)
            folders.insert(Orv::fromBytes(parentOf(entry.place)));
        return std::all_of(folders.begin(), folders.end(),
                           [](const QString& folder) { return isSynced(Orv::toBytes(folder)); });
    }

    static bool isSynced(const std::string& name)
    {
        const auto folder = Orv::Core::openAt(AT_FDCWD, name, O_RDONLY | O_DIRECTORY);
        // There are file systems that have no such thing for folders.
        return folder.isOpen() && (folder.sync() || errno == EINVAL);
    }

    void removeFormers() const
    {
        for (const Entry& entry : m_entries)
            unlink(entry.former.c_str());
    }

    const BatchPlan& m_plan;
    QString m_folder;
    QString m_journal;
    std::vector<Entry> m_entries;
};

QString completeOrTakeBack(const Placement& placement)
{
    QString reason = placement.complete();
    if (reason.isEmpty() || placement.takeBack()) {
        placement.finish();
        return reason;
    }
    return reason + QStringLiteral(", and others cannot be taken back now, which resume will do");
}

} // namespace

QString journalOfComponent(unsigned shard, unsigned component)
{
    return QStringLiteral("placing-%1-%2.json").arg(shard, 6, 10, QLatin1Char('0')).arg(component);
}

QString journalOfPlan()
{
    return QStringLiteral("placing-plan.json");
}

QString journalsOfShard(unsigned shard)
{
    return QStringLiteral("placing-%1-*.json").arg(shard, 6, 10, QLatin1Char('0'));
}

QString allJournals()
{
    return QStringLiteral("placing-*.json");
}

QString placeResults(const BatchPlan& plan, const QString& journal, const QStringList& outputs)
{
    Placement placement(plan, journal);
    for (const QString& output : outputs)
        placement.add(output);
    const QString reason = placement.begin();
    return reason.isEmpty() ? completeOrTakeBack(placement) : reason;
}

bool isPlacing(const BatchPlan& plan, const QString& journal)
{
    return Orv::Core::mayExist(stateFolder(plan) + '/' + journal);
}

QString recoverPlacements(const BatchPlan& plan, const QString& journals)
{
    const QDir folder(stateFolder(plan));
    for (const QString& name : folder.entryList({journals}, QDir::Files, QDir::Name)) {
        Placement placement(plan, name);
        const bool isDone =
            placement.addJournal() &&
            ((placement.beginAgain() && placement.complete().isEmpty()) || placement.takeBack());
        if (!isDone)
            return QStringLiteral("the results that %1 names can neither take their places nor be "
                                  "taken back")
                .arg(folder.filePath(name));
        placement.finish();
    }
    return {};
}

void removeLeftovers(const BatchPlan& plan, bool keepsStaged)
{
    std::error_code error; // what stays is in nobody's way
    const fs::path folder = Orv::toBytes(stateFolder(plan));
    fs::remove_all(folder / "former", error);
    if (!keepsStaged)
        fs::remove_all(folder / "staged", error);
}

void removeStaged(const BatchPlan& plan, const QStringList& outputs)
{
    for (const QString& output : outputs)
        unlink(Orv::toBytes(stagedPath(plan, output)).c_str());
}

} // namespace Ksx::Kit
