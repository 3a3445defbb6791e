// Reads 7z archives with libarchive. Built as a library of its own, which is loaded at need.
#include "reading/archivereader.h"

#include "sevenziplist.h"
#include <archive.h>
#include <archive_entry.h>
#include <algorithm>
#include <clocale>
#include <memory>
#include <new>
#include <vector>

namespace Ksx::Archives {

namespace {

using Ksx::Core::ArchiveResult;
using Ksx::Core::ArchiveVisitor;
using Ksx::Core::MaximumListSize;

constexpr qint64 BlockSize = qint64(64) * 1024;

// An archive, with another list of files than the device has.
class Source
{
public:
    Source(QIODevice& device, quint64 listOffset, const QByteArray& list)
        : m_device(device), m_start(SevenZipStart::of(listOffset, list).written()), m_list(list),
          m_listPlace(SevenZipStart::Size + static_cast<qint64>(listOffset))
    {}

    // Answers the number of bytes, which stand in `block` until the next call.
    qint64 read(const void*& block);
    // Answers the new place, or ARCHIVE_FATAL.
    qint64 seek(qint64 offset, int whence);

private:
    qint64 readPart(const QByteArray& part, qint64 place, const void*& block)
    {
        block = part.constData() + (m_place - place);
        return place + part.size() - m_place;
    }
    qint64 readDevice(const void*& block)
    {
        block = m_block.data();
        const bool isThere = m_device.pos() == m_place || m_device.seek(m_place);
        return isThere ? m_device.read(m_block.data(), std::min(BlockSize, m_listPlace - m_place))
                       : -1;
    }

    QIODevice& m_device;
    QByteArray m_start;
    QByteArray m_list;
    qint64 m_listPlace;
    qint64 m_place = 0;
    std::vector<char> m_block = std::vector<char>(BlockSize);
};

qint64 Source::read(const void*& block)
{
    qint64 count = 0;
    if (m_place < SevenZipStart::Size)
        count = readPart(m_start, 0, block);
    else if (m_place < m_listPlace)
        count = readDevice(block);
    else if (m_place < m_listPlace + m_list.size())
        count = readPart(m_list, m_listPlace, block);
    m_place += std::max<qint64>(count, 0);
    return count;
}

qint64 Source::seek(qint64 offset, int whence)
{
    const qint64 base = whence == SEEK_CUR   ? m_place
                        : whence == SEEK_END ? m_listPlace + m_list.size()
                                             : 0;
    if (offset < -base)
        return ARCHIVE_FATAL;
    m_place = base + offset;
    return m_place;
}

la_ssize_t readBlock(archive*, void* source, const void** block)
{
    return static_cast<la_ssize_t>(static_cast<Source*>(source)->read(*block));
}

la_int64_t seekTo(archive*, void* source, la_int64_t offset, int whence)
{
    return static_cast<Source*>(source)->seek(offset, whence);
}

// Names are UTF-16 in the archive and pass through the C locale on their way out: under one that
// knows ASCII alone they would be lost.
class Utf8Locale
{
public:
    Utf8Locale()
        : m_locale(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)),
          m_former(m_locale != nullptr ? uselocale(m_locale) : nullptr)
    {}
    Utf8Locale(const Utf8Locale&) = delete;
    Utf8Locale& operator=(const Utf8Locale&) = delete;
    ~Utf8Locale()
    {
        if (m_locale == nullptr)
            return;
        uselocale(m_former);
        freelocale(m_locale);
    }

private:
    locale_t m_locale;
    locale_t m_former;
};

// One pass over one archive.
class Pass
{
public:
    Pass(Source& source, const ArchiveVisitor& visitor, qint64 maximumSize, QString& detail)
        : m_source(source), m_archive(archive_read_new(), &archive_read_free),
          m_entry(archive_entry_new(), &archive_entry_free), m_visitor(visitor),
          m_left(maximumSize), m_detail(detail)
    {}

    ArchiveResult run();

private:
    bool open();
    ArchiveResult takeFile(archive_entry* entry);
    ArchiveResult unpack(qint64 wanted, QByteArray& bytes);
    ArchiveResult fail(ArchiveResult result)
    {
        const char* text = archive_error_string(m_archive.get());
        m_detail = QString::fromUtf8(text != nullptr ? text : "");
        return result;
    }

    Source& m_source;
    std::unique_ptr<archive, int (*)(archive*)> m_archive;
    std::unique_ptr<archive_entry, void (*)(archive_entry*)> m_entry; // the one at hand
    const ArchiveVisitor& m_visitor;
    qint64 m_left; // bytes that may still be unpacked
    QString& m_detail;
};

bool Pass::open()
{
    archive* reader = m_archive.get();
    if (reader == nullptr || m_entry == nullptr) // the library's functions do not look
        throw std::bad_alloc();
    return archive_read_support_format_7zip(reader) == ARCHIVE_OK &&
           archive_read_set_read_callback(reader, &readBlock) == ARCHIVE_OK &&
           archive_read_set_seek_callback(reader, &seekTo) == ARCHIVE_OK &&
           archive_read_set_callback_data(reader, &m_source) == ARCHIVE_OK &&
           archive_read_open1(reader) == ARCHIVE_OK;
}

ArchiveResult Pass::run()
{
    if (!open())
        return fail(ArchiveResult::NotOpened);
    for (bool isFirst = true;; isFirst = false) {
        archive_entry* entry = m_entry.get();
        const int status = archive_read_next_header2(m_archive.get(), entry);
        if (status == ARCHIVE_EOF)
            return ArchiveResult::Success;
        if (status != ARCHIVE_OK && status != ARCHIVE_WARN)
            return fail(isFirst ? ArchiveResult::NotOpened : ArchiveResult::BadFile);
        if (archive_entry_filetype(entry) != AE_IFREG)
            continue;
        const ArchiveResult result = takeFile(entry);
        if (result != ArchiveResult::Success)
            return result;
    }
}

ArchiveResult Pass::takeFile(archive_entry* entry)
{
    const char* pathname = archive_entry_pathname_utf8(entry);
    if (pathname == nullptr)
        return fail(ArchiveResult::BadFile);
    const QString name = QString::fromUtf8(pathname);
    // Passing over a file unpacks it too, when it shares its block with others. Sizes are unsigned
    // in the archive, and the largest come out negative.
    const qint64 size = archive_entry_size(entry);
    if (size < 0 || size > m_left) {
        m_detail = name;
        return ArchiveResult::TooLarge;
    }
    const qint64 wanted = m_visitor.wanted(name);
    if (wanted == 0) {
        m_left -= size;
        return ArchiveResult::Success;
    }
    QByteArray bytes;
    const ArchiveResult result = unpack(wanted, bytes);
    if (result == ArchiveResult::Success)
        m_visitor.take(name, bytes);
    else if (m_detail.isEmpty())
        m_detail = name;
    return result;
}

ArchiveResult Pass::unpack(qint64 wanted, QByteArray& bytes)
{
    char block[BlockSize];
    for (;;) {
        // A wrong checksum is a warning to the library, at the end of the file.
        const la_ssize_t count = archive_read_data(m_archive.get(), block, BlockSize);
        if (count == 0)
            return ArchiveResult::Success;
        if (count < 0)
            return fail(ArchiveResult::BadFile);
        m_left -= count;
        if (m_left < 0)
            return ArchiveResult::TooLarge;
        const qint64 missing = wanted == ArchiveVisitor::All ? count : wanted - bytes.size();
        bytes.append(block, static_cast<int>(std::min<qint64>(missing, count)));
    }
}

// The bytes of the list of files as it stands in the device. The archive library finds an archive
// behind whatever stands before it and does not test the checksum of its first bytes; here the file
// is the archive, and all of it must be right.
ArchiveResult readList(QIODevice& device, SevenZipStart& start, QByteArray& list, QString& detail)
{
    if (!start.read(device.read(SevenZipStart::Size)))
        return ArchiveResult::NotOpened;
    const auto rest = static_cast<quint64>(device.size() - SevenZipStart::Size);
    if (start.listOffset > rest || start.listSize > rest - start.listOffset)
        return ArchiveResult::NotOpened;
    if (start.listSize > MaximumListSize) {
        detail = QStringLiteral("%1 bytes").arg(start.listSize);
        return ArchiveResult::ListTooLarge;
    }
    if (!device.seek(SevenZipStart::Size + static_cast<qint64>(start.listOffset)))
        return ArchiveResult::NotOpened;
    list = device.read(static_cast<qint64>(start.listSize));
    const bool isRight = static_cast<quint64>(list.size()) == start.listSize &&
                         archiveChecksum(list) == start.listChecksum;
    return isRight ? ArchiveResult::Success : ArchiveResult::NotOpened;
}

// Puts the plain list in the place of a packed one.
bool unpackList(QIODevice& device, quint64 offset, std::optional<quint32> checksum,
                QByteArray& list, QString& detail)
{
    Source source(device, offset, listOfPlainList(list));
    const ArchiveVisitor visitor{[](const QString&) { return ArchiveVisitor::All; },
                                 [&](const QString&, const QByteArray& bytes) { list = bytes; }};
    return Pass(source, visitor, MaximumListSize, detail).run() == ArchiveResult::Success &&
           (!checksum || *checksum == archiveChecksum(list));
}

// Makes sure that the archive library gets a plain list that it can afford to read. A packed list
// of a packed list is a form that no archiver writes.
ArchiveResult preparePlainList(QIODevice& device, quint64 offset, QByteArray& list, QString& detail)
{
    if (list.isEmpty()) // an archive without files
        return ArchiveResult::Success;
    ListTraits traits = traitsOf(list);
    if (traits.form == ListForm::Packed &&
        unpackList(device, offset, traits.unpackedChecksum, list, detail))
        traits = traitsOf(list);
    if (traits.form == ListForm::TooLarge) {
        detail = traits.excess;
        return ArchiveResult::ListTooLarge;
    }
    return traits.form == ListForm::Plain ? ArchiveResult::Success : ArchiveResult::NotOpened;
}

} // namespace

extern "C" __attribute__((visibility("default"))) ArchiveResult
ksxReadArchive(QIODevice& device, const ArchiveVisitor& visitor, qint64 maximumSize,
               QString& detail)
{
    const Utf8Locale locale;
    SevenZipStart start;
    QByteArray list;
    ArchiveResult result = readList(device, start, list, detail);
    if (result == ArchiveResult::Success)
        result = preparePlainList(device, start.listOffset, list, detail);
    if (result != ArchiveResult::Success)
        return result;
    Source source(device, start.listOffset, list);
    return Pass(source, visitor, maximumSize, detail).run();
}

} // namespace Ksx::Archives
