#include "ksx/core/packagewriter.h"

#include "core/fileplace.h"
#include "core/filesaver.h"
#include "data/content/package.h"
#include "data/content/packagemanipulators.h"
#include "data/filename.h"
#include "data/xmldatawriter.h"
#include "data/xmlvalueconverter.h"
#include "ksx/core/plainroute.h"
#include "package/packagefile.h"
#include "reading/extensionregistry.h"
#include <QFileInfo>
#include <QUrl>

namespace Ksx::Core {

namespace {

using Data::Content::Package;
using Orv::Core::Version;

const QString PresetsScheme = QStringLiteral("obl://");

bool isBelow(const QString& path, const QString& folder)
{
    return path.startsWith(folder.endsWith('/') ? folder : folder + '/');
}

// Behind a linked folder ".." leads elsewhere than the text of the path says.
QString withoutFalseSteps(const QString& path)
{
    if (!path.contains(QLatin1String("..")) || Orv::Core::isSameFile(path, QDir::cleanPath(path)))
        return path;
    const QFileInfo file(path);
    const QString folder = Orv::Core::canonicalPath(file.path());
    return folder.isEmpty() ? path : folder + '/' + file.fileName();
}

// Turns the file references of a package into those that its file holds.
class ReferenceConversion
{
public:
    // `file` has no link in it, so that ".." leads where its text says.
    ReferenceConversion(const QString& file, const QDir& presetsDir)
        : m_file(file), m_fileDir(QFileInfo(file).absoluteDir()), m_namedPresets(presetsDir)
    {
        const QString real = Orv::Core::canonicalPath(presetsDir.absolutePath());
        m_presets = real.isEmpty() ? presetsDir : QDir(real);
    }

    QString operator()(const QString& value) const
    {
        // The reader leaves these as they are. Qt takes a name that begins with ":" for absolute.
        if (!value.startsWith('/') && (!Orv::Data::hasPath(value) || !QDir::isRelativePath(value)))
            return value;
        const QString path = withoutFalseSteps(withRealPresets(value));
        const QString written =
            relativeToPresets(m_fileDir, m_presets, relativeToFile(m_file, path));
        // A name such as "?x" or "a:" would be read as something else.
        const bool isReadable = Orv::Data::hasPath(written) || written.startsWith(PresetsScheme);
        return isReadable ? written : QStringLiteral("./") + written;
    }

private:
    QString withRealPresets(const QString& value) const
    {
        const QString named = m_namedPresets.absolutePath();
        return isBelow(value, named) ? m_presets.absolutePath() + value.mid(named.size()) : value;
    }

    QString m_file;
    QDir m_fileDir;
    QDir m_namedPresets; // as the caller has it, perhaps by a link
    QDir m_presets;
};

bool writeDocument(QIODevice& device, const Package& package, const QString& file,
                   const QDir& presetsDir)
{
    Orv::Data::XmlDataWriter writer(&device);
    writer.addValueConverter(Orv::Data::ValueFlag::FilePath, ReferenceConversion(file, presetsDir));
    return writer.write(package);
}

} // namespace

QString relativeToFile(const QString& path, const QString& value)
{
    const QDir directory = QFileInfo(path).absoluteDir();
    return !value.isEmpty() && directory.exists(value) ? directory.relativeFilePath(value) : value;
}

QString relativeToPresets(const QDir& fileDir, const QDir& presetsDir, const QString& value)
{
    const QString presets = QDir::cleanPath(presetsDir.absolutePath());
    if (value.isEmpty() || isBelow(fileDir.absolutePath() + '/', presets))
        return value.isEmpty() ? value : fileDir.relativeFilePath(value);
    const QString absolute = fileDir.absoluteFilePath(value);
    if (isBelow(QDir::cleanPath(absolute), presets))
        return PresetsScheme + absolute.section('/', -1);
    return fileDir.relativeFilePath(value);
}

void stampPackage(const Package& package, const QString& path)
{
    Version format;
    Version updater;
    const ExtensionRegistry& registry = ExtensionRegistry::instance();
    if (registry.importerFor(QUrl::fromLocalFile(path)) != nullptr) {
        format = registry.newestUpdater().formatVersion();
        updater = registry.newestUpdater().updaterVersion();
    }
    editPlainly([&](Orv::Core::ManipulatorContext& context) {
        const Orv::Core::ManipulatorStruct<Package> manipulator(package, context);
        manipulator.formatVersion().set(Orv::toBytes(format.toString()));
        manipulator.updaterVersion().set(Orv::toBytes(updater.toString()));
        return true;
    });
}

bool writePackage(const Package& package, const QString& file, const QDir& presetsDir,
                  QString* keptCopy, const QString& place)
{
    Orv::Core::FileSaver saver(file);
    const bool isSaved =
        saver.open(QIODevice::WriteOnly) &&
        writeDocument(saver, package, place.isEmpty() ? file : place, presetsDir) && saver.commit();
    if (keptCopy != nullptr)
        *keptCopy = saver.keptCopy();
    return isSaved;
}

bool renderPackage(const Package& package, const QString& path, const QDir& presetsDir,
                   QIODevice& device)
{
    stampPackage(package, path);
    return writeDocument(device, package, Orv::Core::realPath(path), presetsDir);
}

bool savePackage(const Package& package, const QString& path, const QDir& presetsDir,
                 QString* keptCopy, const QString& place)
{
    stampPackage(package, place.isEmpty() ? path : place);
    return writePackage(package, Orv::Core::realPath(path), presetsDir, keptCopy,
                        place.isEmpty() ? QString() : Orv::Core::realPath(place));
}

} // namespace Ksx::Core
