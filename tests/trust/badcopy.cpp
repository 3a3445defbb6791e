// Copies a file as the tool writes one, or breaks one of its promises: badcopy MODE INPUT TARGET.
//
//   good      writes a file of another name, and gives it the name of the target at the end
//   inplace   writes into the target
//   careless  takes no notice of failures
//   silent    says nothing about them
//   litter    leaves the file of the other name behind
//   late      syncs the file when that has got its name
//   forgetful does not sync the folder
//   greedy    writes to its input
//   fragile   ends by a signal where it gets no memory
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::size_t MaximumSize = 1 << 20;
constexpr std::size_t BlockSize = 100;

bool readAll(const char* path, char* data, std::size_t& size)
{
    const int file = open(path, O_RDONLY);
    ssize_t count = 1;
    while (file >= 0 && count > 0) {
        count = read(file, data + size, MaximumSize - size);
        size += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return file >= 0 && close(file) == 0 && count == 0;
}

bool sync(const std::string& path)
{
    const int file = open(path.c_str(), O_RDONLY);
    return file >= 0 && fsync(file) == 0 && close(file) == 0;
}

bool writeAll(const char* path, const char* data, std::size_t size)
{
    const int file = open(path, O_WRONLY | O_CREAT | O_TRUNC, 0644);
    std::size_t done = 0;
    ssize_t count = 1;
    while (file >= 0 && done < size && count > 0) {
        count = write(file, data + done, size - done < BlockSize ? size - done : BlockSize);
        done += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return file >= 0 && close(file) == 0 && done == size;
}

bool copy(const std::string& mode, const char* input, const std::string& target)
{
    // One block, which a test can refuse.
    const std::unique_ptr<char, decltype(&std::free)> block(
        static_cast<char*>(std::malloc(MaximumSize)), &std::free);
    char* const data = block.get();
    if (data == nullptr && mode == "fragile")
        std::abort();
    std::size_t size = 0;
    if (data == nullptr || !readAll(input, data, size))
        return false;
    if (mode == "greedy" && !writeAll(input, data, size))
        return false;
    if (mode == "inplace")
        return writeAll(target.c_str(), data, size);
    const std::string other = target + ".new";
    const bool isWritten = writeAll(other.c_str(), data, size) && (mode == "late" || sync(other));
    if ((isWritten || mode == "careless") && rename(other.c_str(), target.c_str()) == 0 &&
        (mode != "late" || sync(target)) &&
        (mode == "forgetful" || sync(target.substr(0, target.rfind('/')))))
        return true;
    if (mode != "litter")
        unlink(other.c_str());
    return false;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 4)
        return 0; // somebody asks for the help
    std::signal(SIGXFSZ, SIG_IGN);
    const std::string mode = argv[1];
    if (copy(mode, argv[2], argv[3]) || mode == "careless")
        return 0;
    if (mode != "silent")
        std::fprintf(stderr, "Error! Cannot saved: %s\n", argv[3]);
    return 1;
}
