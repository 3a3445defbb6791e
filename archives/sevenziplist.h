// The list of files of a 7z archive, as far as it tells how much there is of everything.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace Ksx::Archives {

// The first bytes of an archive, which tell where its list of files is.
struct SevenZipStart
{
    static constexpr int Size = 32;

    quint64 listOffset = 0; // behind the start
    quint64 listSize = 0;
    quint32 listChecksum = 0;

    // The start of an archive with that list.
    static SevenZipStart of(quint64 listOffset, const QByteArray& list);
    // False unless the bytes are a whole start with the right signature and checksum.
    bool read(const QByteArray& bytes);
    QByteArray written() const;
};

enum class ListForm
{
    Plain,
    Packed,   // tells, in the form of a list, where the plain list is and how it is compressed
    Damaged,  // or of a form that no archiver writes
    TooLarge, // tells of more than MaximumListSize and MaximumListCount allow
};

struct ListTraits
{
    ListForm form = ListForm::Damaged;
    QString excess;                          // of TooLarge: what is too much
    std::optional<quint32> unpackedChecksum; // of Packed, unless it tells of none
};

// An archive library sets memory aside for whatever number a list begins with, hundreds of bytes for
// each of a list's own, so a list must have been here before it goes there.
ListTraits traitsOf(const QByteArray& list);

// The list of an archive that has the same bytes as that of the packed list, and in it one file,
// without a checksum: the plain list.
QByteArray listOfPlainList(const QByteArray& packedList);

quint32 archiveChecksum(const QByteArray& bytes);

} // namespace Ksx::Archives
