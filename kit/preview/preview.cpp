#include "ksx/kit/preview.h"

#include "core/fileplace.h"
#include "core/filesaver.h"
#include "core/messagenode.h"
#include "core/regularfile.h"
#include "data/boundedxmlreader.h"
#include "data/content/package.h"
#include "data/filename.h"
#include "ksx/core/datapath.h"
#include "ksx/core/dependencyopener.h"
#include "ksx/core/failurereason.h"
#include "ksx/core/libraryservices.h"
#include "ksx/core/outputfile.h"
#include "ksx/core/packagewriter.h"
#include "ksx/core/uidsource.h"
#include "packageparts.h"
#include "preview/filehistory.h"
#include "sha256.h"
#include <QBuffer>
#include <QHash>
#include <QSet>
#include <QUrl>
#include <algorithm>
#include <cstring>
#include <map>
#include <mutex>
#include <unordered_map>
#include <unordered_set>

namespace Ksx::Kit {

namespace {

namespace Doc = Data::Content;
using Core::DataPath;
using Core::DependencyOpener;
using Core::Uid;
using Orv::Core::RegularFile;

// The uids that the clock has given in this preview, and the texts that take their places.
class NewUids
{
public:
    NewUids()
    {
        Core::UidSource::setFollower([this](Uid uid) { m_drawn.insert(uid); });
    }
    NewUids(const NewUids&) = delete;
    NewUids& operator=(const NewUids&) = delete;
    ~NewUids() { Core::UidSource::setFollower({}); }

    bool contains(Uid uid) const { return m_drawn.count(uid) != 0; }

    // Returns whether a document has one of them. `name` is that of elements that hold uids.
    bool areIn(const DocumentTree& tree, DocumentTree::Index name) const
    {
        for (DocumentTree::Index element = 0; element < tree.size(); ++element)
            if (tree[element].name == name && contains(tree.textOf(element).toUInt()))
                return true;
        return false;
    }

    // Returns the value of an element without random numbers.
    QString shown(const QString& element, const QString& text)
    {
        if (isUidOfDependency(element))
            return contains(text.toUInt()) ? nameOf(text.toUInt()) : text;
        const std::string bytes = Orv::toBytes(text);
        if (!DataPath::isDataPath(bytes))
            return text;
        const std::optional<Uid> uid = DataPath::dependencyOf(bytes);
        if (!uid || !contains(*uid))
            return text;
        return Orv::fromBytes(DataPath::withParameter(bytes, Core::DataPathKey::Dependency,
                                                      Orv::toBytes(nameOf(*uid))));
    }

private:
    static bool isUidOfDependency(const QString& element)
    {
        return element.startsWith(QLatin1String("dependencies/dependency")) &&
               element.endsWith(QLatin1String("/uid"));
    }
    QString nameOf(Uid uid)
    {
        const auto number = m_numbers.emplace(uid, m_numbers.size() + 1).first->second;
        return QStringLiteral("new uid %1").arg(number);
    }

    std::unordered_set<Uid> m_drawn;
    std::unordered_map<Uid, std::size_t> m_numbers; // in the order in which they are shown
};

// The histories of the files that are opened, by worker threads.
class Histories
{
public:
    void add(const Core::UpdateStage& stage)
    {
        FileHistory* history = nullptr;
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            history = &m_histories[stage.url.toLocalFile()];
        }
        history->add(stage); // one thread reads a file
    }

    // Hands on the histories by the packages that came of the files. Files that failed have none: the
    // memory of their packages may be that of others by now.
    std::unordered_map<const Doc::Package*, FileHistory>
    takeAll(const std::vector<DependencyOpener::Failure>& failures)
    {
        for (const DependencyOpener::Failure& failure : failures)
            m_histories.erase(failure.filename);
        std::unordered_map<const Doc::Package*, FileHistory> all;
        for (auto& [file, history] : m_histories)
            all.emplace(history.package(), std::move(history));
        m_histories.clear();
        return all;
    }

private:
    std::mutex m_mutex;
    std::map<QString, FileHistory> m_histories;
};

QByteArray bytesOf(const QString& file)
{
    RegularFile device(file);
    return device.open(QIODevice::ReadOnly) ? device.readAll() : QByteArray();
}

bool hasBytes(const QString& file, const QByteArray& bytes)
{
    constexpr qint64 BlockSize = 1 << 16;
    RegularFile device(file);
    if (!device.open(QIODevice::ReadOnly) || device.size() != bytes.size())
        return false;
    qint64 place = 0;
    while (place < bytes.size()) {
        const QByteArray block = device.read(BlockSize);
        const bool isEqual = !block.isEmpty() && block.size() <= bytes.size() - place &&
                             std::memcmp(block.constData(), bytes.constData() + place,
                                         static_cast<std::size_t>(block.size())) == 0;
        if (!isEqual)
            return false;
        place += block.size();
    }
    return true;
}

// The places of elements in a file, which is read once for all of them.
class ElementPlaces
{
public:
    void want(const std::vector<TreeChange>& changes)
    {
        for (const TreeChange& one : changes)
            if (one.origin != DocumentTree::None)
                m_wanted.push_back(one.origin);
    }

    void find(const QString& file)
    {
        std::sort(m_wanted.begin(), m_wanted.end());
        m_wanted.erase(std::unique(m_wanted.begin(), m_wanted.end()), m_wanted.end());
        RegularFile device(file);
        if (m_wanted.empty() || !device.open(QIODevice::ReadOnly))
            return;
        Orv::Data::BoundedXmlReader reader(&device);
        DocumentTree::Index element = 0;
        while (m_places.size() < m_wanted.size()) {
            const auto token = reader.advance();
            if (token == QXmlStreamReader::Invalid || token == QXmlStreamReader::EndDocument)
                return;
            if (token == QXmlStreamReader::StartElement && element++ == m_wanted[m_places.size()])
                m_places.push_back({reader.lineNumber(), reader.columnNumber()});
        }
    }

    void setPlace(ElementChange& change, DocumentTree::Index origin) const
    {
        const auto found = std::lower_bound(m_wanted.begin(), m_wanted.end(), origin);
        const auto number = static_cast<std::size_t>(found - m_wanted.begin());
        if (found == m_wanted.end() || *found != origin || number >= m_places.size())
            return;
        change.line = m_places[number].line;
        change.column = m_places[number].column;
    }

private:
    struct Place
    {
        qint64 line;
        qint64 column;
    };
    std::vector<DocumentTree::Index> m_wanted;
    std::vector<Place> m_places;
};

bool isReference(const ElementChange& change)
{
    const bool isFilename = change.element.startsWith(QLatin1String("dependencies/")) &&
                            change.element.endsWith(QLatin1String("/filename"));
    const bool isFilepath = change.element == QLatin1String("filepath");
    return change.kind == ElementChangeKind::Changed &&
           (isFilename || isFilepath || change.newText.startsWith(QLatin1String("pkg://")));
}

// One preview.
class Run
{
public:
    Run(const UpdateSettings& settings, const PreviewProgress& progress)
        : m_settings(settings), m_progress(progress), m_manager(*m_services.packagesListManager()),
          m_presets(Orv::Core::absolutePath(
              settings.presetsPaths.isEmpty() ? QString() : settings.presetsPaths.front()))
    {}

    Preview run()
    {
        open();
        const auto packages = m_manager.openPackages();
        for (const auto& package : packages) {
            m_preview.files.push_back(fileOf(*package));
            if (m_progress)
                m_progress(m_preview.files.size(), packages.size());
        }
        settleTargets();
        if (m_preview.failures.empty())
            for (const PreviewedFile& file : m_preview.files)
                if (!file.error.isEmpty())
                    m_preview.errors.append(file.error);
        return std::move(m_preview);
    }

private:
    void open()
    {
        DependencyOpener opener(m_manager, m_settings.presetsPaths,
                                DependencyOpener::OnFailure::GoOn);
        if (m_settings.workers != 0)
            opener.setWorkers(m_settings.workers);
        Histories histories;
        opener.setStageFunction(
            [&histories](const Core::UpdateStage& stage) { histories.add(stage); });
        for (const QString& file : m_settings.files) {
            const QString canonical = Orv::Core::canonicalPath(file);
            m_inputs.insert(canonical.isEmpty() ? file : canonical, file);
        }
        Orv::Core::MessageNode report;
        if (!opener.open(m_settings.files, &report))
            addFailures(opener.failures());
        m_histories = histories.takeAll(opener.failures());
    }

    // The update itself stops at the first one.
    void addFailures(const std::vector<DependencyOpener::Failure>& failures)
    {
        QSet<QString> known; // a file that several packages need fails for each of them
        for (const DependencyOpener::Failure& failure : failures) {
            if (known.contains(failure.filename))
                continue;
            known.insert(failure.filename);
            m_preview.failures.push_back({m_inputs.value(failure.filename, failure.filename),
                                          Core::failureReason(failure.filename, failure.error)});
        }
        const DependencyOpener::Failure& first = failures.front();
        m_preview.errors.append((first.isDependency ? QStringLiteral("Cannot load dependency: ")
                                                    : QStringLiteral("Cannot load: ")) +
                                first.filename);
        m_preview.errors.append(QStringLiteral("Packages cannot be correctly loaded"));
    }

    PreviewedFile fileOf(const Doc::Package& package)
    {
        PreviewedFile file;
        file.file = m_manager.filePath(package);
        file.isDependency = !m_inputs.contains(file.file);
        const QString pattern = m_settings.outputName.value_or(QLatin1String(Core::UpdatedName));
        file.target = Core::updatedFile(pattern, m_settings.outputFolder, file.file);
        if (file.target.isEmpty())
            file.error = QStringLiteral("Error! Output name empty");
        const QByteArray output = file.error.isEmpty() ? outputOf(file, package) : QByteArray();
        tellChanges(file, package, output);
        return file;
    }

    // Returns the bytes that go to the target. Returns none, with an error, if they cannot be saved.
    QByteArray outputOf(PreviewedFile& file, const Doc::Package& package) const
    {
        const QString place = Orv::Core::realPath(file.target);
        QBuffer output;
        output.open(QIODevice::WriteOnly);
        file.targetExists = Orv::Core::exists(file.target);
        if (!Core::renderPackage(package, file.target, m_presets, output) ||
            !Orv::Core::FileSaver::canSave(place)) {
            file.error = QStringLiteral("Error! Cannot saved: ") + file.target;
            return {};
        }
        file.size = output.size();
        file.sha256 = Sha256::digitsOf(output.data());
        file.isChanged = !hasBytes(place, output.data());
        return output.data();
    }

    void tellChanges(PreviewedFile& file, const Doc::Package& package, const QByteArray& output)
    {
        auto history = m_histories.extract(&package);
        if (history.empty()) {
            if (output.isEmpty() || hasBytes(file.file, output))
                return;
            m_histories[&package].addFile(bytesOf(file.file)); // an archive is no document
            history = m_histories.extract(&package);
        }
        history.mapped().addOutput(output);
        tellChanges(file, history.mapped());
    }

    void tellChanges(PreviewedFile& file, FileHistory& history)
    {
        file.hasNewUids = m_newUids.areIn(history.tree(), history.nameOf("uid"));
        ElementPlaces places;
        for (const FileHistory::StepChanges& step : history.steps())
            places.want(step.changes);
        places.want(history.reading());
        places.want(history.writing());
        places.find(file.file);
        for (const FileHistory::StepChanges& step : history.steps())
            file.steps.push_back({step.version, step.kind, told(step.changes, places)});
        file.reading = told(history.reading(), places);
        for (ElementChange& change : told(history.writing(), places))
            (isReference(change) ? file.references : file.writing).push_back(std::move(change));
    }

    std::vector<ElementChange> told(const std::vector<TreeChange>& changes,
                                    const ElementPlaces& places)
    {
        std::vector<ElementChange> all;
        all.reserve(changes.size());
        for (const TreeChange& one : changes) {
            ElementChange& change = all.emplace_back(one.change);
            places.setPlace(change, one.origin);
            change.oldText = m_newUids.shown(change.element, change.oldText);
            change.newText = m_newUids.shown(change.element, change.newText);
        }
        return all;
    }

    // The last package that goes to a file stays there.
    void settleTargets()
    {
        QSet<QString> later;
        for (auto file = m_preview.files.rbegin(); file != m_preview.files.rend(); ++file) {
            if (!file->error.isEmpty())
                continue;
            const QString place = Orv::Core::realPath(file->target);
            file->isReplaced = later.contains(place);
            file->isChanged = file->isChanged && !file->isReplaced;
            later.insert(place);
        }
    }

    const UpdateSettings& m_settings;
    const PreviewProgress& m_progress;
    Core::LibraryServices m_services{Core::ServiceParts::Packages::EndWithServices};
    Core::PackagesListManager& m_manager;
    QDir m_presets;
    NewUids m_newUids;
    std::unordered_map<const Doc::Package*, FileHistory> m_histories;
    QHash<QString, QString> m_inputs; // as they were given, by their canonical paths
    Preview m_preview;
};

} // namespace

QString wordOf(ElementChangeKind kind)
{
    switch (kind) {
    case ElementChangeKind::Added:
        return QStringLiteral("added");
    case ElementChangeKind::Removed:
        return QStringLiteral("removed");
    case ElementChangeKind::Renamed:
        return QStringLiteral("renamed");
    case ElementChangeKind::Moved:
        return QStringLiteral("moved");
    case ElementChangeKind::Reordered:
        return QStringLiteral("reordered");
    default:
        return QStringLiteral("changed");
    }
}

QString wordOf(UpdateStepKind kind)
{
    return kind == UpdateStepKind::Document ? QStringLiteral("document")
                                            : QStringLiteral("objects");
}

bool Preview::hasChanges() const
{
    return std::any_of(files.begin(), files.end(),
                       [](const PreviewedFile& file) { return file.isChanged; });
}

Preview previewUpdate(const UpdateSettings& settings, const PreviewProgress& progress)
{
    return Run(settings, progress).run();
}

} // namespace Ksx::Kit
