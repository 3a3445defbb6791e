// Reads 7z archives with libarchive. Built as a library of its own, which is loaded at need.
#include "ksx/core/archivereader.h"

#include <QtEndian>
#include <archive.h>
#include <archive_entry.h>
#include <algorithm>
#include <clocale>
#include <memory>
#include <zlib.h>

namespace {

using Ksx::Core::ArchiveResult;
using Ksx::Core::ArchiveVisitor;

constexpr std::size_t BlockSize = 64 * 1024;

// What the callbacks work on.
struct Source
{
    QIODevice& device;
    char block[BlockSize];
};

la_ssize_t readBlock(archive*, void* data, const void** buffer)
{
    auto* source = static_cast<Source*>(data);
    *buffer = source->block;
    return static_cast<la_ssize_t>(source->device.read(source->block, BlockSize));
}

la_int64_t seekTo(archive*, void* data, la_int64_t offset, int whence)
{
    QIODevice& device = static_cast<Source*>(data)->device;
    const qint64 base = whence == SEEK_CUR ? device.pos() : whence == SEEK_END ? device.size() : 0;
    return device.seek(base + offset) ? device.pos() : ARCHIVE_FATAL;
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
    Pass(QIODevice& device, const ArchiveVisitor& visitor, qint64 maximumSize, QString& detail)
        : m_source(new Source{device, {}}), m_archive(archive_read_new(), &archive_read_free),
          m_visitor(visitor), m_left(maximumSize), m_detail(detail)
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

    std::unique_ptr<Source> m_source;
    std::unique_ptr<archive, int (*)(archive*)> m_archive;
    const ArchiveVisitor& m_visitor;
    qint64 m_left; // bytes that may still be unpacked
    QString& m_detail;
};

// The library finds an archive behind whatever stands before it and does not test the checksum of
// its first bytes; here the file is the archive, and all of it must be right.
bool hasSoundStart(QIODevice& device)
{
    constexpr char Signature[] = {'7', 'z', '\xBC', '\xAF', '\x27', '\x1C'};
    constexpr int ChecksumPlace = 8;
    constexpr int ChecksumBegin = 12;
    constexpr int StartSize = 32;
    const QByteArray start = device.read(StartSize);
    if (start.size() != StartSize || !device.seek(0) ||
        !start.startsWith(QByteArray::fromRawData(Signature, sizeof(Signature))))
        return false;
    const auto* bytes = reinterpret_cast<const unsigned char*>(start.constData());
    const uLong checksum =
        crc32(crc32(0, nullptr, 0), bytes + ChecksumBegin, StartSize - ChecksumBegin);
    return checksum == qFromLittleEndian<quint32>(bytes + ChecksumPlace);
}

bool Pass::open()
{
    archive* reader = m_archive.get();
    return reader != nullptr && archive_read_support_format_7zip(reader) == ARCHIVE_OK &&
           archive_read_set_read_callback(reader, &readBlock) == ARCHIVE_OK &&
           archive_read_set_seek_callback(reader, &seekTo) == ARCHIVE_OK &&
           archive_read_set_callback_data(reader, m_source.get()) == ARCHIVE_OK &&
           archive_read_open1(reader) == ARCHIVE_OK;
}

ArchiveResult Pass::run()
{
    if (!hasSoundStart(m_source->device) || !open())
        return fail(ArchiveResult::NotOpened);
    for (bool isFirst = true;; isFirst = false) {
        archive_entry* entry = nullptr;
        const int status = archive_read_next_header(m_archive.get(), &entry);
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

} // namespace

extern "C" __attribute__((visibility("default"))) ArchiveResult
ksxReadArchive(QIODevice& device, const ArchiveVisitor& visitor, qint64 maximumSize,
               QString& detail)
{
    const Utf8Locale locale;
    return Pass(device, visitor, maximumSize, detail).run();
}
