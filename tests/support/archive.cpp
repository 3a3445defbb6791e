#include "support/archive.h"

#include "support/temporarydirectory.h"
#include <QProcess>
#include <QStandardPaths>
#include <QStringList>
#include <boost/crc.hpp>
#include <gtest/gtest.h>

namespace TestSupport {

namespace {

// What stands in a list of files.
enum class Property : unsigned char
{
    End = 0x00,
    Header = 0x01,
    MainStreams = 0x04,
    Files = 0x05,
    PackInfo = 0x06,
    UnpackInfo = 0x07,
    SubStreams = 0x08,
    Size = 0x09,
    Checksum = 0x0A,
    Folder = 0x0B,
    UnpackSize = 0x0C,
    SubStreamCount = 0x0D,
    EmptyStream = 0x0E,
    EmptyFile = 0x0F,
    Names = 0x11,
    PackedHeader = 0x17,
};

constexpr std::size_t OffsetPlace = 12;
constexpr std::size_t SizePlace = 20;
constexpr std::size_t HeaderChecksumPlace = 28;
constexpr std::size_t StartChecksumPlace = 8;

std::uint32_t checksumOf(const std::string& bytes)
{
    boost::crc_32_type crc;
    crc.process_bytes(bytes.data(), bytes.size());
    return crc.checksum();
}

std::string littleEndian(std::uint64_t number, std::size_t size)
{
    std::string bytes;
    for (std::size_t i = 0; i < size; ++i)
        bytes += static_cast<char>((number >> (8 * i)) & 0xFF);
    return bytes;
}

std::uint64_t fromLittleEndian(const std::string& bytes)
{
    std::uint64_t number = 0;
    for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte)
        number = number << 8 | static_cast<unsigned char>(*byte);
    return number;
}

std::string code(Property property)
{
    return {static_cast<char>(property)};
}

// One bit for each file, the first in the highest.
std::string bits(const std::vector<bool>& values)
{
    std::string bytes((values.size() + 7) / 8, '\0');
    for (std::size_t i = 0; i < values.size(); ++i)
        if (values[i])
            bytes[i / 8] = static_cast<char>(bytes[i / 8] | (0x80 >> (i % 8)));
    return bytes;
}

std::string sized(Property property, const std::string& bytes)
{
    return code(property) + archiveNumber(bytes.size()) + bytes;
}

// Latin-1 to UTF-16.
std::string wideName(const std::string& name)
{
    std::string bytes;
    for (const char c : name)
        bytes += {c, '\0'};
    return bytes + std::string(2, '\0');
}

std::uint64_t sizeOf(const ArchiveFile& file)
{
    return file.announcedSize.value_or(file.bytes.size());
}

bool hasStream(const ArchiveFile& file)
{
    return !file.isDirectory && (!file.bytes.empty() || file.announcedSize);
}

std::string streamsInfo(const ArchiveFiles& files, Blocks blocks)
{
    const bool isSolid = blocks == Blocks::OneForAll;
    std::string packed;
    std::string sizes;
    std::string allButLastSize;
    std::string lastSize;
    std::string checksums;
    std::uint64_t packedTotal = 0;
    std::uint64_t total = 0;
    std::uint64_t count = 0;
    for (const ArchiveFile& file : files) {
        if (!hasStream(file))
            continue;
        ++count;
        packed += archiveNumber(file.bytes.size());
        packedTotal += file.bytes.size();
        sizes += archiveNumber(sizeOf(file));
        total += sizeOf(file);
        allButLastSize += lastSize;
        lastSize = archiveNumber(sizeOf(file));
        checksums += littleEndian(file.announcedChecksum.value_or(checksumOf(file.bytes)), 4);
    }
    if (count == 0)
        return {};
    const std::uint64_t folders = isSolid ? 1 : count;
    const std::string copyCoder("\1\1\0", 3); // one coder, whose id is the one byte 0
    std::string text = code(Property::MainStreams) + code(Property::PackInfo) + archiveNumber(0) +
                       archiveNumber(folders) + code(Property::Size) +
                       (isSolid ? archiveNumber(packedTotal) : packed) + code(Property::End) +
                       code(Property::UnpackInfo) + code(Property::Folder) +
                       archiveNumber(folders) + '\0';
    for (std::uint64_t i = 0; i < folders; ++i)
        text += copyCoder;
    text += code(Property::UnpackSize) + (isSolid ? archiveNumber(total) : sizes) +
            code(Property::End) + code(Property::SubStreams);
    if (isSolid)
        text += code(Property::SubStreamCount) + archiveNumber(count) + code(Property::Size) +
                allButLastSize;
    return text + code(Property::Checksum) + '\1' + checksums + code(Property::End) +
           code(Property::End);
}

std::string filesInfo(const ArchiveFiles& files)
{
    std::vector<bool> isEmpty;
    std::vector<bool> isEmptyFile;
    std::string names(1, '\0');
    for (const ArchiveFile& file : files) {
        isEmpty.push_back(!hasStream(file));
        if (isEmpty.back())
            isEmptyFile.push_back(!file.isDirectory);
        names += wideName(file.name);
    }
    std::string text = code(Property::Files) + archiveNumber(files.size());
    if (!isEmptyFile.empty())
        text += sized(Property::EmptyStream, bits(isEmpty)) +
                sized(Property::EmptyFile, bits(isEmptyFile));
    return text + sized(Property::Names, names) + code(Property::End);
}

// What stands between the start and the list.
std::string packedBytes(const std::string& archive)
{
    return archive.substr(ArchiveStartSize, fromLittleEndian(archive.substr(OffsetPlace, 8)));
}

QString archiverPath()
{
    return QStandardPaths::findExecutable(QStringLiteral("7zz"));
}

// The bytes as LZMA packs them.
std::string compressedBytes(const std::string& bytes)
{
    ArchiveFiles files(1);
    files.front().name = "bytes";
    files.front().bytes = bytes;
    return packedBytes(compressedArchive(files, {"-m0=LZMA:d=64k", "-mx=1", "-mhc=off"}));
}

} // namespace

std::string archiveNumber(std::uint64_t number)
{
    if (number < 0x80)
        return {static_cast<char>(number)};
    return '\xFF' + littleEndian(number, 8);
}

std::string withHeaderPlace(std::string archive, std::uint64_t offset, std::uint64_t size)
{
    archive.replace(OffsetPlace, 8, littleEndian(offset, 8));
    archive.replace(SizePlace, 8, littleEndian(size, 8));
    const std::string start = archive.substr(OffsetPlace, ArchiveStartSize - OffsetPlace);
    return archive.replace(StartChecksumPlace, 4, littleEndian(checksumOf(start), 4));
}

std::string withChecksumsRepaired(std::string archive)
{
    const std::string header = archiveHeader(archive);
    archive.replace(HeaderChecksumPlace, 4, littleEndian(checksumOf(header), 4));
    return withHeaderPlace(archive, fromLittleEndian(archive.substr(OffsetPlace, 8)),
                           fromLittleEndian(archive.substr(SizePlace, 8)));
}

std::string archiveHeader(const std::string& archive)
{
    const std::uint64_t begin = ArchiveStartSize + fromLittleEndian(archive.substr(OffsetPlace, 8));
    return begin > archive.size()
               ? std::string()
               : archive.substr(begin, fromLittleEndian(archive.substr(SizePlace, 8)));
}

std::string withArchiveHeader(const std::string& archive, const std::string& header)
{
    const std::uint64_t offset = fromLittleEndian(archive.substr(OffsetPlace, 8));
    const std::string changed = archive.substr(0, ArchiveStartSize + offset) + header;
    return withChecksumsRepaired(withHeaderPlace(changed, offset, header.size()));
}

std::string withPackedList(const std::string& archive, Packing packing)
{
    // One coder: its flags and id, and for LZMA the usual parameters and the size of its window.
    const std::string coder = packing == Packing::Stored
                                  ? std::string("\1\0", 2)
                                  : std::string("\x23\3\1\1\5\x5D\0\0\1\0", 10);
    const std::string list = archiveHeader(archive);
    const std::string packed = packing == Packing::Stored ? list : compressedBytes(list);
    const std::string body = packedBytes(archive);
    const std::string packedList =
        code(Property::PackedHeader) + code(Property::PackInfo) + archiveNumber(body.size()) +
        archiveNumber(1) + code(Property::Size) + archiveNumber(packed.size()) +
        code(Property::End) + code(Property::UnpackInfo) + code(Property::Folder) +
        archiveNumber(1) + '\0' + '\1' + coder + code(Property::UnpackSize) +
        archiveNumber(list.size()) + code(Property::Checksum) + '\1' +
        littleEndian(checksumOf(list), 4) + code(Property::End) + code(Property::End);
    const std::string start = archive.substr(0, ArchiveStartSize);
    return withArchiveHeader(withHeaderPlace(start + body + packed, body.size() + packed.size(), 0),
                             packedList);
}

std::string listOfEmptyFiles(std::size_t count)
{
    const std::string allBits = bits(std::vector<bool>(count, true));
    const std::string name = wideName("a");
    std::string names(1, '\0');
    names.reserve(1 + count * name.size());
    for (std::size_t i = 0; i < count; ++i)
        names += name;
    return code(Property::Header) + code(Property::Files) + archiveNumber(count) +
           sized(Property::EmptyStream, allBits) + sized(Property::EmptyFile, allBits) +
           sized(Property::Names, names) + code(Property::End) + code(Property::End);
}

std::string storedArchive(const ArchiveFiles& files, Blocks blocks)
{
    std::string packed;
    for (const ArchiveFile& file : files)
        packed += file.isDirectory ? std::string() : file.bytes;
    const std::string signature("7z\xBC\xAF\x27\x1C\0\4", 8);
    const std::string start = signature + std::string(ArchiveStartSize - signature.size(), '\0');
    const std::string header = code(Property::Header) + streamsInfo(files, blocks) +
                               filesInfo(files) + code(Property::End);
    return withArchiveHeader(withHeaderPlace(start + packed, packed.size(), 0), header);
}

bool hasArchiver()
{
    return !archiverPath().isEmpty();
}

std::string compressedArchive(const ArchiveFiles& files, const std::vector<std::string>& switches)
{
    const TemporaryDirectory directory;
    QStringList arguments{"a", "-t7z", "-bso0", "-bsp0", "-mmt=1"};
    for (const std::string& one : switches)
        arguments.append(QString::fromStdString(one));
    arguments.append(QString::fromStdString(directory.path("archive.7z")));
    for (const ArchiveFile& file : files)
        if (file.isDirectory)
            directory.makeDirectory("files/" + file.name);
        else
            directory.write("files/" + file.name, file.bytes);
    directory.makeDirectory("files");
    arguments.append(".");
    QProcess archiver;
    archiver.setWorkingDirectory(QString::fromStdString(directory.path("files")));
    archiver.start(archiverPath(), arguments);
    EXPECT_TRUE(archiver.waitForFinished(-1));
    EXPECT_EQ(archiver.exitCode(), 0) << archiver.readAllStandardError().toStdString();
    return directory.read("archive.7z");
}

} // namespace TestSupport
