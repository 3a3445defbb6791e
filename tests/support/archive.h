// 7z archives made for a test: plain ones written here, byte by byte under control, and compressed
// ones that the program 7zz makes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace TestSupport {

struct ArchiveFile
{
    std::string name;
    std::string bytes;
    bool isDirectory = false;
    // Instead of the right ones, what the list of files says.
    std::optional<std::uint64_t> announcedSize{};
    std::optional<std::uint32_t> announcedChecksum{};
};

using ArchiveFiles = std::vector<ArchiveFile>;

enum class Blocks
{
    OnePerFile,
    OneForAll, // solid
};

// An archive of files that are stored as they are, in this order, and not compressed. Nothing is
// checked, so that archives can be made that no archiver would make.
std::string storedArchive(const ArchiveFiles& files, Blocks blocks = Blocks::OnePerFile);

// The bytes in front of the files, and the place of the number of bytes behind them.
constexpr std::size_t ArchiveStartSize = 32;
// The archive with another list of files.
std::string withArchiveHeader(const std::string& archive, const std::string& header);
// The list of files, compressed or not.
std::string archiveHeader(const std::string& archive);
// The archive with its checksums made right, but for those of files: so that damage is met by what
// reads the list of files.
std::string withChecksumsRepaired(std::string archive);
// The archive with the offset and the size of the list of files replaced, and the checksum right.
std::string withHeaderPlace(std::string archive, std::uint64_t offset, std::uint64_t size);
enum class Packing
{
    Stored,
    Lzma, // takes an archiver
};
// The archive with its list of files packed, as if it were a file.
std::string withPackedList(const std::string& archive, Packing packing);
// A list of that many files without bytes. All have one name, of one letter.
std::string listOfEmptyFiles(std::size_t count);
// A number as the list of files holds it.
std::string archiveNumber(std::uint64_t number);

// Can this machine compress?
bool hasArchiver();
// An archive that 7zz makes with those switches, such as "-m0=LZMA".
std::string compressedArchive(const ArchiveFiles& files, const std::vector<std::string>& switches);

} // namespace TestSupport
