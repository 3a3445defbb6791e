#include "ksx/core/packagewriter.h"

#include "data/content/package.h"
#include "data/content/packagemanipulators.h"
#include "data/filename.h"
#include "data/xmldatawriter.h"
#include "ksx/core/extensionregistry.h"
#include "ksx/core/plainroute.h"
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryFile>
#include <QUrl>
#include <filesystem>
#include <system_error>

namespace Ksx::Core {

namespace {

using Data::Content::Package;
using Orv::Core::Version;

const QString PresetsScheme = QStringLiteral("obl://");
constexpr qint64 CopyBlock = qint64{64} * 1024;

void stamp(const Package& package, const QString& path)
{
    Version format;
    Version updater;
    const ExtensionRegistry& registry = ExtensionRegistry::instance();
    const auto* newest = registry.newestUpdater();
    if (newest != nullptr && registry.importerFor(QUrl::fromLocalFile(path)) != nullptr) {
        format = newest->formatVersion();
        updater = newest->updaterVersion();
    }
    editPlainly([&](Orv::Core::ManipulatorContext& context) {
        const Orv::Core::ManipulatorStruct<Package> manipulator(package, context);
        manipulator.formatVersion().set(Orv::toBytes(format.toString()));
        manipulator.updaterVersion().set(Orv::toBytes(updater.toString()));
        return true;
    });
}

bool writeDocument(QIODevice& device, const Package& package, const QString& path,
                   const QDir& presetsDir)
{
    const QDir fileDir = QFileInfo(path).absoluteDir();
    Orv::Data::XmlDataWriter writer(&device);
    writer.addValueConverter(Orv::Data::ValueFlag::FilePath,
                             [&](const QString& value) { return relativeToFile(path, value); });
    writer.addValueConverter(Orv::Data::ValueFlag::FilePath, [&](const QString& value) {
        return relativeToPresets(fileDir, presetsDir, value);
    });
    return writer.write(package);
}

bool copyAll(QIODevice& from, QIODevice& to)
{
    while (!from.atEnd()) {
        const QByteArray block = from.read(CopyBlock);
        if (block.isEmpty() || to.write(block) != block.size())
            return false;
    }
    return true;
}

// Overwrites a regular file in its place. The old bytes are kept aside until the new ones are on
// disk: their blocks are the file's own already, so that they can be put back.
bool overwrite(QFile& file, QIODevice& content)
{
    QTemporaryFile former;
    if (!file.open(QIODevice::ReadWrite) || !former.open() || !copyAll(file, former))
        return false;
    const auto put = [&](QIODevice& source) {
        return source.seek(0) && file.seek(0) && copyAll(source, file) && file.flush() &&
               file.resize(source.size());
    };
    if (put(content))
        return true;
    static_cast<void>(put(former));
    return false;
}

// Where no file can be made beside the target. The document is made whole elsewhere first.
bool writeDirectly(const Package& package, const QString& path, const QDir& presetsDir)
{
    QFile file(path);
    if (!QFileInfo(path).isFile()) { // a device, a pipe
        return file.open(QIODevice::WriteOnly) && writeDocument(file, package, path, presetsDir) &&
               file.flush();
    }
    QTemporaryFile content;
    return content.open() && writeDocument(content, package, path, presetsDir) && content.flush() &&
           overwrite(file, content);
}

// The file behind a chain of symbolic links, which need not exist; null if the links go round. No
// path is cleaned on the way: where ".." leads from a linked directory is for the system to say.
QString followLinks(const QString& path)
{
    constexpr int MaximumLinks = 40; // as many as the system follows
    std::filesystem::path target(Orv::toBytes(path));
    for (int i = 0; i < MaximumLinks; ++i) {
        std::error_code error;
        if (!std::filesystem::is_symlink(target, error))
            return Orv::fromBytes(target.string());
        target = target.parent_path() / std::filesystem::read_symlink(target, error);
    }
    return {};
}

} // namespace

QString relativeToFile(const QString& path, const QString& value)
{
    const QDir directory = QFileInfo(path).absoluteDir();
    return !value.isEmpty() && directory.exists(value) ? directory.relativeFilePath(value) : value;
}

QString relativeToPresets(const QDir& fileDir, const QDir& presetsDir, const QString& value)
{
    const QString presets = presetsDir.absolutePath();
    if (value.isEmpty() || fileDir.absolutePath().startsWith(presets))
        return value.isEmpty() ? value : fileDir.relativeFilePath(value);
    const QString absolute = fileDir.absoluteFilePath(value);
    if (QDir::cleanPath(absolute).startsWith(presets))
        return PresetsScheme + absolute.section('/', -1);
    return fileDir.relativeFilePath(value);
}

bool savePackage(const Package& package, const QString& path, const QDir& presetsDir)
{
    stamp(package, path);
    const QString target = followLinks(path);
    const QFileInfo info(target);
    if (target.isEmpty() || info.isDir())
        return false;
    if (info.exists() && !info.isFile())
        return writeDirectly(package, target, presetsDir);
    QSaveFile file(target);
    if (file.open(QIODevice::WriteOnly))
        return writeDocument(file, package, path, presetsDir) && file.commit();
    return info.isFile() && info.isWritable() && writeDirectly(package, target, presetsDir);
}

} // namespace Ksx::Core
