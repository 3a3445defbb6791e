#include "ksx/core/packagereader.h"

#include "core/regularfile.h"
#include "data/content/package.h"
#include "data/filename.h"
#include "data/treewalk.h"
#include "ksx/core/filereferences.h"
#include "reading/extensionregistry.h"
#include "updating/documentdevice.h"
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <exception>
#include <new>

namespace Ksx::Core {

namespace {

using Data::Content::Package;
using Orv::Core::MessageLevel;
using Orv::Core::MessageNode;
using Orv::Core::Version;
using namespace Orv::Core::Extensions;

QString readerText(const char* key)
{
    return QCoreApplication::translate("Ksx::Core::PackageReader", key);
}

QString coreText(const char* key)
{
    return QCoreApplication::translate("Ksx::Core", key);
}

// Tries the readers that serve the importer, oldest first; the first success ends the search. The
// device stands at 0 again behind each.
enum class VersionResult
{
    Found,
    NotFound,
    DeviceFailed, // reported
};

template <class Reader>
VersionResult readVersion(const std::vector<const Reader*>& allReaders,
                          const IDataImporter& importer, QIODevice& device, Version& version,
                          MessageNode* log)
{
    std::vector<const Reader*> readers;
    std::copy_if(allReaders.begin(), allReaders.end(), std::back_inserter(readers),
                 [&](const Reader* reader) { return reader->accepts(importer); });
    std::stable_sort(readers.begin(), readers.end(),
                     [](const Reader* a, const Reader* b) { return a->version() < b->version(); });
    for (const Reader* reader : readers) {
        const bool isFound = reader->read(device, version);
        if (!device.seek(0)) {
            addMessage(log, MessageLevel::Error,
                       coreText("ERROR_FAIL_TO_RESET_DEVICE_READ_POSITION"));
            return VersionResult::DeviceFailed;
        }
        if (isFound)
            return VersionResult::Found;
    }
    return VersionResult::NotFound;
}

template <class Updater>
void sortByVersion(std::vector<const Updater*>& updaters)
{
    std::stable_sort(updaters.begin(), updaters.end(), [](const Updater* a, const Updater* b) {
        return a->updaterVersion() < b->updaterVersion();
    });
}

// Keeps those that a file of that version needs, in ascending order; none for a file without one.
template <class Updater>
std::vector<const Updater*> select(const std::vector<const Updater*>& updaters,
                                   const Version& fileVersion)
{
    std::vector<const Updater*> selected;
    if (fileVersion.isNone())
        return selected;
    std::copy_if(updaters.begin(), updaters.end(), std::back_inserter(selected),
                 [&](const Updater* updater) {
                     return updater->updaterVersion() > fileVersion &&
                            updater->updaterVersion() <= applicationVersion();
                 });
    sortByVersion(selected);
    return selected;
}

// Copies the file into ".autosave" beside it. A failure is reported and stops nothing.
void backUp(const QUrl& url, const Version& version, MessageNode* log)
{
    if (url.scheme() != QLatin1String("file"))
        return;
    const QFileInfo file(url.toLocalFile());
    QString copyPath;
    if (file.exists()) {
        const QDir directory(file.absoluteDir().filePath(QStringLiteral(".autosave")));
        directory.mkpath(QStringLiteral("."));
        copyPath = directory.filePath(
            QStringLiteral("%1_%2.%3")
                .arg(file.baseName(), version.toString().replace('.', '_'), file.suffix()));
        if (directory.exists()) {
            QFile::remove(copyPath);
            if (QFile::copy(file.absoluteFilePath(), copyPath)) {
                addMessage(log, MessageLevel::Information,
                           readerText("ERROR_FILE_BACKUP_DONE_%1").arg(copyPath));
                return;
            }
        }
    }
    addMessage(log, MessageLevel::Error, readerText("ERROR_FILE_BACKUP_FAILED_%1").arg(copyPath));
}

QString stepText(const IUpdater& updater)
{
    return QStringLiteral("%1 : %2").arg(updater.updaterVersion().toString(), updater.name());
}

// One opening: what its steps hand on to each other.
class Opening
{
public:
    Opening(const QUrl& url, const QUrl& place, MessageNode* log, const ProgressFunction& progress,
            const StageFunction& onStage)
        : m_url(url), m_place(place), m_log(log), m_progress(progress), m_onStage(onStage)
    {}

    bool openDevice();
    bool readVersions();
    void selectUpdaters();
    bool isTooNew();
    bool confirm(const PackageReader::ConfirmFunction& confirmUpdate);
    void backUpFile() { backUp(m_url, m_updaterVersion, m_log); }
    bool updateFormat();
    std::unique_ptr<Package> import();
    bool updatePackage(Package& package);
    void convertReferences(Package& package, const PackageReader::Converters* converters) const;
    void stamp(Package& package) const;

    bool isUpdated() const { return !m_updaters.empty(); }

private:
    bool isDeviceGood() const;
    void showStage(DocumentDevice& memory, const IUpdater* step) const;
    void showStage(const Package& package, const IUpdater* step) const;
    bool fail(const QString& text) const
    {
        addMessage(m_log, MessageLevel::Error, text);
        return false;
    }

    const QUrl& m_url;
    const QUrl& m_place; // where the file is taken to lie
    MessageNode* m_log;
    const ProgressFunction& m_progress;
    const StageFunction& m_onStage;
    const IDataImporter* m_importer = nullptr;
    std::unique_ptr<QIODevice> m_device;
    Version m_formatVersion;
    Version m_updaterVersion;
    std::vector<const IDataFormatUpdater*> m_formatUpdaters;
    std::vector<const IPackageUpdater*> m_packageUpdaters;
    PackageReader::Updaters m_updaters; // both, merged
};

bool Opening::openDevice()
{
    m_importer = ExtensionRegistry::instance().importerFor(m_place);
    if (m_importer == nullptr)
        return fail(readerText("ERROR_NO_IMPORTER_FOUND"));
    m_device = m_importer->createDevice(m_url);
    if (m_device == nullptr)
        return fail(coreText("ERROR_FAIL_TO_CREATE_DEVICE"));
    if (!m_device->open(QIODevice::ReadOnly))
        return fail(readerText("ERROR_FAIL_TO_OPEN_URL_%1").arg(m_url.toString()));
    return true;
}

// A read error looks like an end to those who read a document.
bool Opening::isDeviceGood() const
{
    const auto* file = dynamic_cast<const Orv::Core::RegularFile*>(m_device.get());
    if (file == nullptr || !file->hasFailed())
        return true;
    return fail(readerText("ERROR_FAIL_TO_READ_URL_%1").arg(m_url.toString()));
}

bool Opening::readVersions()
{
    const ExtensionRegistry& registry = ExtensionRegistry::instance();
    const VersionResult format = readVersion(registry.formatVersionReaders(), *m_importer,
                                             *m_device, m_formatVersion, m_log);
    if (format == VersionResult::NotFound)
        return fail(readerText("ERROR_FAIL_TO_READ_VERSION_OF_URL_%1").arg(m_url.toString()));
    if (format == VersionResult::DeviceFailed)
        return false;
    const VersionResult updater = readVersion(registry.updaterVersionReaders(), *m_importer,
                                              *m_device, m_updaterVersion, m_log);
    if (updater == VersionResult::NotFound)
        m_updaterVersion = m_formatVersion;
    return updater != VersionResult::DeviceFailed;
}

void Opening::selectUpdaters()
{
    const ExtensionRegistry& registry = ExtensionRegistry::instance();
    m_formatUpdaters = select(registry.formatUpdaters(), m_updaterVersion);
    m_formatUpdaters.erase(std::remove_if(m_formatUpdaters.begin(), m_formatUpdaters.end(),
                                          [this](const IDataFormatUpdater* updater) {
                                              return !updater->accepts(*m_importer);
                                          }),
                           m_formatUpdaters.end());
    m_packageUpdaters = select(registry.packageUpdaters(), m_updaterVersion);
    m_updaters.assign(m_formatUpdaters.begin(), m_formatUpdaters.end());
    m_updaters.insert(m_updaters.end(), m_packageUpdaters.begin(), m_packageUpdaters.end());
    sortByVersion(m_updaters);
}

// Only a file that needs no step is looked at: one with a low updater version is taken through the
// updaters, whatever its format version says.
bool Opening::isTooNew()
{
    const Version newest = ExtensionRegistry::instance().newestUpdater().updaterVersion();
    if (isUpdated() || m_formatVersion.isNone() || m_formatVersion <= newest)
        return false;
    fail(readerText("ERROR_APPLICATION_TOO_OLD_TO_OPEN_URL_%1_VERSION_%2_%3_NEEDED")
             .arg(m_url.toString(), newest.toString(), m_formatVersion.toString()));
    return true;
}

bool Opening::confirm(const PackageReader::ConfirmFunction& confirmUpdate)
{
    if (!confirmUpdate || confirmUpdate(m_updaters, m_url, m_updaterVersion))
        return true;
    return fail(readerText("ERROR_UPDATE_PROCESS_STOPED_BY_USER"));
}

// A document that does not parse is a failure of the next step or of the importer.
void Opening::showStage(DocumentDevice& memory, const IUpdater* step) const
{
    QString error;
    const Orv::Data::LightDocument* const document = m_onStage ? memory.document(error) : nullptr;
    if (document != nullptr)
        m_onStage({m_url, step, document});
}

void Opening::showStage(const Package& package, const IUpdater* step) const
{
    if (m_onStage && isUpdated())
        m_onStage({m_url, step, nullptr, &package});
}

bool Opening::updateFormat()
{
    if (m_formatUpdaters.empty())
        return true;
    auto memory = std::make_unique<DocumentDevice>(m_device->readAll());
    if (!isDeviceGood())
        return false;
    m_device.reset();
    memory->open(QIODevice::ReadWrite); // as memory always does
    showStage(*memory, nullptr);
    for (const IDataFormatUpdater* updater : m_formatUpdaters) {
        addMessage(m_log, MessageLevel::Information, stepText(*updater));
        if (!updater->update(*memory, m_log, m_progress))
            return fail(readerText("ERROR_FAIL_TO_APPLY_FORMAT_UPDATER_%1").arg(updater->name()));
        if (!memory->seek(0))
            return fail(coreText("ERROR_FAIL_TO_RESET_DEVICE_READ_POSITION"));
        showStage(*memory, updater);
    }
    m_device = std::move(memory);
    return true;
}

std::unique_ptr<Package> Opening::import()
{
    std::unique_ptr<Orv::Data::BaseObject> root;
    try {
        root = m_importer->import(*m_device, m_log, m_progress);
    } catch (const std::bad_alloc&) {
        throw; // no fault of the file
    } catch (const std::exception& exception) {
        fail(QString::fromLatin1(exception.what())); // whatever it was, the file is not read
    }
    if (!isDeviceGood())
        return nullptr;
    m_device.reset();
    if (root == nullptr) {
        fail(readerText("ERROR_FAIL_TO_CREATE_PACKAGE"));
        return nullptr;
    }
    if (dynamic_cast<Package*>(root.get()) == nullptr) {
        fail(readerText("ERROR_WRONG_ROOT_OBJECT_TYPE"));
        return nullptr;
    }
    return std::unique_ptr<Package>(static_cast<Package*>(root.release()));
}

bool Opening::updatePackage(Package& package)
{
    showStage(package, nullptr);
    for (const IPackageUpdater* updater : m_packageUpdaters) {
        addMessage(m_log, MessageLevel::Information, stepText(*updater));
        if (!updater->update(package, m_log, m_progress))
            return fail(readerText("ERROR_FAIL_TO_UPDATE_PACKAGE"));
        showStage(package, updater);
    }
    return true;
}

void Opening::convertReferences(Package& package, const PackageReader::Converters* converters) const
{
    std::unique_ptr<Orv::Data::IXmlValueConverter> absolute;
    PackageReader::Converters all;
    if (m_place.scheme() == QLatin1String("file")) {
        absolute = std::make_unique<Orv::Data::XmlValueConverterURLRelativeToAbsolute>(
            m_place.toLocalFile());
        all.push_back(absolute.get());
    }
    if (converters != nullptr)
        all.insert(all.end(), converters->begin(), converters->end());
    for (Orv::Data::Attribute<Orv::Data::Text>* reference : fileReferencesOf(package)) {
        for (const Orv::Data::IXmlValueConverter* converter : all) {
            std::string converted;
            if (converter->convert(reference->get(), converted))
                reference->assign(converted);
        }
    }
}

void Opening::stamp(Package& package) const
{
    if (!isUpdated())
        return;
    const IUpdater& last = *m_updaters.back();
    const auto write = [](auto& attribute, const Version& version) {
        if (!version.isNone())
            attribute.assign(Orv::toBytes(version.toString()));
    };
    write(package.formatVersion(), last.formatVersion());
    write(package.updaterVersion(), last.updaterVersion());
}

} // namespace

std::unique_ptr<Package> PackageReader::open(const QUrl& url, MessageNode* log,
                                             const ProgressFunction& progress,
                                             const ConfirmFunction& confirmUpdate,
                                             const Converters* converters, bool* wasUpdated,
                                             bool noBackup, const QUrl& place,
                                             const StageFunction& onStage)
{
    Opening opening(url, place.isEmpty() ? url : place, log, progress, onStage);
    if (!opening.openDevice() || !opening.readVersions())
        return nullptr;
    opening.selectUpdaters();
    if (opening.isTooNew())
        return nullptr;
    if (opening.isUpdated()) {
        if (!opening.confirm(confirmUpdate))
            return nullptr;
        if (!noBackup)
            opening.backUpFile();
    }
    if (!opening.updateFormat())
        return nullptr;
    auto package = opening.import();
    if (package == nullptr || !opening.updatePackage(*package))
        return nullptr;
    if (wasUpdated != nullptr)
        *wasUpdated = opening.isUpdated();
    opening.convertReferences(*package, converters);
    opening.stamp(*package);
    return package;
}

} // namespace Ksx::Core
