#include "ksx/core/archivereader.h"

#include <QCoreApplication>
#include <QLibrary>

namespace Ksx::Core {

namespace {

using ReadFunction = ArchiveResult (*)(QIODevice&, const ArchiveVisitor&, qint64, QString&);

// Stands beside the executable, and stays loaded until the process ends.
ReadFunction loadReader(QString& detail)
{
    QLibrary library(QCoreApplication::applicationDirPath() + QStringLiteral("/libksx_archives"));
    const auto read = reinterpret_cast<ReadFunction>(library.resolve("ksxReadArchive"));
    if (read == nullptr)
        detail = library.errorString();
    return read;
}

} // namespace

ArchiveResult readArchive(QIODevice& device, const ArchiveVisitor& visitor, QString& detail)
{
    static ReadFunction read = nullptr;
    if (read == nullptr)
        read = loadReader(detail);
    return read == nullptr ? ArchiveResult::NotOpened
                           : read(device, visitor, MaximumUnpackedSize, detail);
}

} // namespace Ksx::Core
