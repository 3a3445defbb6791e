#include "reading/archivereader.h"

#include "core/moduleplace.h"
#include <QLibrary>

namespace Ksx::Core {

namespace {

using ReadFunction = ArchiveResult (*)(QIODevice&, const ArchiveVisitor&, qint64, QString&);

// Stays loaded until the process ends.
ReadFunction loadReader(const QString& path, QString& detail)
{
    QLibrary library(path);
    const auto read = reinterpret_cast<ReadFunction>(library.resolve("ksxReadArchive"));
    if (read == nullptr)
        detail = library.errorString();
    return read;
}

} // namespace

ArchiveResult readArchive(QIODevice& device, const ArchiveVisitor& visitor, QString& detail,
                          const QString& library)
{
    const QString path =
        library.isEmpty() ? Orv::Core::modulePlace(QStringLiteral("libksx_archives.so")) : library;
    const ReadFunction read = loadReader(path, detail);
    return read == nullptr ? ArchiveResult::NoReader
                           : read(device, visitor, MaximumUnpackedSize, detail);
}

} // namespace Ksx::Core
