// The files of a 7z archive, in one pass.
#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QString>
#include <functional>

namespace Ksx::Core {

enum class ArchiveResult
{
    Success,
    NoReader,     // the library that reads archives cannot be loaded
    NotOpened,    // no archive, or its list of files cannot be read
    ListTooLarge, // its list of files is of more than there may be
    BadFile,      // a file cannot be unpacked, or its checksum is wrong
    TooLarge,     // unpacks, or says that it unpacks, to more than MaximumUnpackedSize
};

// What an archive may unpack to, all of its files together, in bytes.
constexpr qint64 MaximumUnpackedSize = qint64{1} << 30;
// What its list of files may come to when unpacked, in bytes, and of how many things of one kind it
// may tell: files, blocks of files, streams.
constexpr qint64 MaximumListSize = qint64{16} << 20;
constexpr int MaximumListCount = 100000;

struct ArchiveVisitor
{
    static constexpr qint64 All = -1;

    // How many bytes of the file of that name are wanted, from its begin. With 0 the file is
    // passed over; otherwise all of it is unpacked, so that its checksum is tested.
    std::function<qint64(const QString& name)> wanted;
    // Is given the wanted bytes of a file that has been unpacked whole.
    std::function<void(const QString& name, const QByteArray& bytes)> take;
};

// Visits the regular files in the order of the archive, each unpacked at most once. `device` is
// open for reading and can seek. On failure `detail` tells more of it; the visitor may have been
// given files by then. The library that reads archives is loaded at the first call: it is dear to
// load, and most runs of the tool meet no archive. `library` is its path; empty for the one that
// modulePlace() finds.
ArchiveResult readArchive(QIODevice& device, const ArchiveVisitor& visitor, QString& detail,
                          const QString& library = {});

} // namespace Ksx::Core
