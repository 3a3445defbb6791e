#include "sevenziplist.h"

#include "reading/archivereader.h"
#include <QtEndian>
#include <algorithm>
#include <numeric>
#include <vector>
#include <zlib.h>

namespace Ksx::Archives {

namespace {

using Ksx::Core::MaximumListCount;
using Ksx::Core::MaximumListSize;

constexpr char Signature[] = {'7', 'z', '\xBC', '\xAF', '\x27', '\x1C'};
constexpr char FormatVersion[] = {'\0', '\4'};
constexpr int StartChecksumPlace = 8;
constexpr int StartChecksumBegin = 12;
constexpr int OffsetPlace = 12;
constexpr int SizePlace = 20;
constexpr int ListChecksumPlace = 28;

// What stands in front of the parts of a list.
enum class Mark : quint8
{
    End = 0x00,
    Header = 0x01,
    MainStreams = 0x04,
    Files = 0x05,
    PackInfo = 0x06,
    UnpackInfo = 0x07,
    SubStreams = 0x08,
    Size = 0x09,
    Checksums = 0x0A,
    Folder = 0x0B,
    UnpackSizes = 0x0C,
    SubStreamCounts = 0x0D,
    Names = 0x11,
    PackedHeader = 0x17,
};

void append(QByteArray& bytes, Mark mark)
{
    bytes.append(static_cast<char>(mark));
}

// Goes through a list up to the number of files. After the first fault there is nothing left to
// read and every byte is 0, so that all loops end.
class ListScan
{
public:
    explicit ListScan(const QByteArray& list)
        : m_next(reinterpret_cast<const quint8*>(list.constData())), m_end(m_next + list.size())
    {}

    ListTraits run();

private:
    // What compresses one block of files.
    static constexpr quint64 MaximumCoders = 32;
    static constexpr quint8 Stored = 0x00; // the id of what does not compress
    static constexpr quint8 IdSizeMask = 0x0F;
    static constexpr quint8 HasStreamCounts = 0x10;
    static constexpr quint8 HasProperties = 0x20;
    static constexpr quint8 UnusedFlags = 0xC0;

    // A block of files, and what unpacks it.
    struct Folder
    {
        quint64 packedStreams = 0;
        quint64 unpackedSizes = 0;
        bool isStored = false; // as it is, without compression
        bool isShort = false;  // stored, and of another size than it says
        bool hasChecksum = false;
    };

    void packedHeader();
    void header();
    // What is packed, and what unpacks each block of it.
    std::vector<Folder> blocks();
    void packInfo();
    std::vector<Folder> folders();
    Folder folder();
    // Answers whether the coder compresses nothing.
    bool coder(quint64& inputs, quint64& outputs);
    void unpackedSizes(std::vector<Folder>& folders);
    void subStreams(const std::vector<Folder>& folders);

    quint8 byte();
    quint64 number();
    void numbers(quint64 count);
    // A number that may be no larger: of things that memory is set aside for, of coders.
    quint64 count();
    quint64 few();
    void skip(quint64 size);
    // Which of so many things have a checksum.
    std::vector<bool> checksums(quint64 count);

    bool accept(Mark mark);
    void expect(Mark mark) { require(accept(mark)); }
    void require(bool isRight)
    {
        if (!isRight)
            fail(ListForm::Damaged);
    }
    void fail(ListForm form)
    {
        if (m_form == ListForm::Plain)
            m_form = form;
        m_next = m_end;
    }
    void failAsTooLarge(quint64 number, const char* unit)
    {
        if (m_form == ListForm::Plain)
            m_excess = QString::number(number) + QLatin1String(unit);
        fail(ListForm::TooLarge);
    }

    const quint8* m_next;
    const quint8* m_end;
    ListForm m_form = ListForm::Plain; // so far
    std::vector<quint64> m_packedSizes;
    quint64 m_unpackedSize = 0;        // the largest of all streams
    std::optional<quint32> m_checksum; // of the last folder that has one
    QString m_excess;
};

ListTraits ListScan::run()
{
    if (accept(Mark::PackedHeader)) {
        packedHeader();
        if (m_form == ListForm::Plain)
            m_form = ListForm::Packed;
    } else {
        expect(Mark::Header);
        header();
    }
    return {m_form, m_excess, m_checksum};
}

void ListScan::packedHeader()
{
    const std::size_t folderCount = blocks().size();
    expect(Mark::End);
    require(folderCount == 1 && m_next == m_end);
    if (m_unpackedSize > MaximumListSize)
        failAsTooLarge(m_unpackedSize, " bytes");
}

void ListScan::header()
{
    if (accept(Mark::MainStreams)) {
        const std::vector<Folder> found = blocks();
        if (accept(Mark::SubStreams))
            subStreams(found);
        expect(Mark::End);
    }
    if (accept(Mark::Files))
        count();
    else
        expect(Mark::End);
}

std::vector<ListScan::Folder> ListScan::blocks()
{
    if (accept(Mark::PackInfo))
        packInfo();
    return accept(Mark::UnpackInfo) ? folders() : std::vector<Folder>();
}

void ListScan::packInfo()
{
    number(); // the place
    const quint64 streamCount = count();
    expect(Mark::Size);
    m_packedSizes.clear();
    for (quint64 i = 0; i < streamCount && m_form == ListForm::Plain; ++i)
        m_packedSizes.push_back(number());
    if (accept(Mark::Checksums))
        checksums(streamCount);
    expect(Mark::End);
}

std::vector<ListScan::Folder> ListScan::folders()
{
    expect(Mark::Folder);
    std::vector<Folder> found(count());
    require(byte() == 0); // else the folders stand elsewhere
    for (Folder& one : found)
        one = folder();
    unpackedSizes(found);
    m_checksum.reset();
    if (accept(Mark::Checksums)) {
        const std::vector<bool> isDefined = checksums(found.size());
        for (std::size_t i = 0; i < found.size(); ++i)
            found[i].hasChecksum = isDefined[i];
    }
    expect(Mark::End);
    return found;
}

ListScan::Folder ListScan::folder()
{
    quint64 inputs = 0;
    quint64 outputs = 0;
    const quint64 coderCount = few();
    bool isStored = coderCount == 1;
    for (quint64 i = 0; i < coderCount; ++i)
        isStored = coder(inputs, outputs) && isStored;
    require(outputs > 0 && inputs >= outputs && inputs <= MaximumCoders);
    if (m_form != ListForm::Plain)
        return {};
    const quint64 bindings = outputs - 1;
    const quint64 packed = inputs - bindings;
    numbers(2 * bindings);
    if (packed > 1)
        numbers(packed);
    Folder result;
    result.packedStreams = packed;
    result.unpackedSizes = outputs;
    result.isStored = isStored;
    return result;
}

bool ListScan::coder(quint64& inputs, quint64& outputs)
{
    const quint8 flags = byte();
    require((flags & UnusedFlags) == 0);
    const quint64 idSize = flags & IdSizeMask;
    const bool isStored = idSize == 1 && m_next != m_end && *m_next == Stored;
    skip(idSize);
    inputs += (flags & HasStreamCounts) != 0 ? few() : 1;
    outputs += (flags & HasStreamCounts) != 0 ? few() : 1;
    if ((flags & HasProperties) != 0)
        skip(number());
    return isStored;
}

void ListScan::unpackedSizes(std::vector<Folder>& folders)
{
    expect(Mark::UnpackSizes);
    quint64 stream = 0;
    for (Folder& one : folders) {
        quint64 size = 0;
        for (quint64 i = 0; i < one.unpackedSizes; ++i) {
            size = number();
            m_unpackedSize = std::max(m_unpackedSize, size);
        }
        one.isShort =
            one.isStored && (stream >= m_packedSizes.size() || m_packedSizes[stream] != size);
        stream += one.packedStreams;
    }
}

void ListScan::subStreams(const std::vector<Folder>& folders)
{
    std::vector<quint64> counts(folders.size(), 1);
    if (accept(Mark::SubStreamCounts))
        for (quint64& one : counts)
            one = count();
    const quint64 total = std::accumulate(counts.begin(), counts.end(), quint64{0});
    if (total > MaximumListCount)
        failAsTooLarge(total, " entries");
    // Of the last stream of a folder, and of the checksum of a folder of one stream, the list
    // tells with the folder.
    quint64 sizes = 0;
    quint64 unknown = 0;
    for (std::size_t i = 0; i < counts.size(); ++i) {
        sizes += counts[i] > 0 ? counts[i] - 1 : 0;
        unknown += counts[i] == 1 && folders[i].hasChecksum ? 0 : counts[i];
        // An archive library goes round in circles at the end of the block.
        require(counts[i] <= 1 || !folders[i].isShort);
    }
    if (accept(Mark::Size))
        numbers(sizes);
    if (accept(Mark::Checksums))
        checksums(unknown);
    expect(Mark::End);
}

quint8 ListScan::byte()
{
    if (m_next == m_end) {
        fail(ListForm::Damaged);
        return 0;
    }
    return *m_next++;
}

// The highest bits of the first byte that are set tell how many bytes follow, the lowest first; the
// bits behind them are the highest of the number.
quint64 ListScan::number()
{
    const quint8 first = byte();
    quint64 value = 0;
    for (unsigned i = 0; i < 8; ++i) {
        const unsigned mask = 0x80u >> i;
        if ((first & mask) == 0)
            return value | quint64{first & (mask - 1)} << (8 * i);
        value |= quint64{byte()} << (8 * i);
    }
    return value;
}

void ListScan::numbers(quint64 count)
{
    for (quint64 i = 0; i < count && m_form == ListForm::Plain; ++i)
        number();
}

quint64 ListScan::count()
{
    const quint64 value = number();
    if (value <= MaximumListCount)
        return value;
    failAsTooLarge(value, " entries");
    return 0;
}

quint64 ListScan::few()
{
    const quint64 value = number();
    require(value <= MaximumCoders);
    return value <= MaximumCoders ? value : 0;
}

void ListScan::skip(quint64 size)
{
    if (size > static_cast<quint64>(m_end - m_next))
        fail(ListForm::Damaged);
    else
        m_next += size;
}

std::vector<bool> ListScan::checksums(quint64 count)
{
    std::vector<bool> isDefined(count, true);
    if (byte() == 0) {
        unsigned bits = 0;
        for (quint64 i = 0; i < count; ++i) {
            bits = i % 8 == 0 ? byte() : bits << 1;
            isDefined[i] = (bits & 0x80) != 0;
        }
    }
    for (auto left = std::count(isDefined.begin(), isDefined.end(), true); left > 0; --left) {
        const quint8* const place = m_next;
        skip(sizeof(quint32));
        if (m_form == ListForm::Plain)
            m_checksum = qFromLittleEndian<quint32>(place);
    }
    return isDefined;
}

bool ListScan::accept(Mark mark)
{
    if (m_next == m_end || *m_next != static_cast<quint8>(mark))
        return false;
    ++m_next;
    return true;
}

} // namespace

quint32 archiveChecksum(const QByteArray& bytes)
{
    return static_cast<quint32>(crc32(0, reinterpret_cast<const Bytef*>(bytes.constData()),
                                      static_cast<uInt>(bytes.size())));
}

SevenZipStart SevenZipStart::of(quint64 listOffset, const QByteArray& list)
{
    return {listOffset, static_cast<quint64>(list.size()), archiveChecksum(list)};
}

bool SevenZipStart::read(const QByteArray& bytes)
{
    if (bytes.size() != Size ||
        !bytes.startsWith(QByteArray::fromRawData(Signature, sizeof(Signature))))
        return false;
    const char* const places = bytes.constData();
    listOffset = qFromLittleEndian<quint64>(places + OffsetPlace);
    listSize = qFromLittleEndian<quint64>(places + SizePlace);
    listChecksum = qFromLittleEndian<quint32>(places + ListChecksumPlace);
    return qFromLittleEndian<quint32>(places + StartChecksumPlace) ==
           archiveChecksum(bytes.mid(StartChecksumBegin));
}

QByteArray SevenZipStart::written() const
{
    QByteArray bytes(Signature, sizeof(Signature));
    bytes.append(FormatVersion, sizeof(FormatVersion)).resize(Size);
    char* const places = bytes.data();
    qToLittleEndian(listOffset, places + OffsetPlace);
    qToLittleEndian(listSize, places + SizePlace);
    qToLittleEndian(listChecksum, places + ListChecksumPlace);
    qToLittleEndian(archiveChecksum(bytes.mid(StartChecksumBegin)), places + StartChecksumPlace);
    return bytes;
}

ListTraits traitsOf(const QByteArray& list)
{
    return ListScan(list).run();
}

QByteArray listOfPlainList(const QByteArray& packedList)
{
    static constexpr char Name[] = {'\0', 'a', '\0', '\0', '\0'}; // UTF-16, behind its place
    QByteArray list;
    append(list, Mark::Header);
    append(list, Mark::MainStreams);
    list.append(packedList.mid(1, packedList.size() - 2));
    append(list, Mark::SubStreams); // without a word: one file in each block
    append(list, Mark::End);
    append(list, Mark::End);
    append(list, Mark::Files);
    list.append('\1');
    append(list, Mark::Names);
    list.append(static_cast<char>(sizeof(Name))).append(Name, sizeof(Name));
    append(list, Mark::End);
    append(list, Mark::End);
    return list;
}

} // namespace Ksx::Archives
