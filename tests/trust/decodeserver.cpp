// Decodes many pictures, each in a child of this process that has been loaded already. The child runs the
// main() of kestrix-decode, confinement included, on a guarded heap: the libraries that decode are not
// built for the sanitizers.
//
// A request on standard input is three texts, each with a zero byte behind it: a file, its ending, and
// the number that fills fresh memory. The answer is a line: exit code (-1 behind a signal), signal (0 for
// none), microseconds of cpu, kilobytes of resident memory at the peak, bytes of the answer, its mark,
// kind, width and height, bytes of the pixels, and a hash of the pixels.
//
// Started as "kestrix-decodeserver --samples FOLDER" it writes the pictures that the tests make, good
// ones and hostile ones, and filter.obl, a filter with the image input "in".
#include "childend.h"
#include "guardedheap.h"
#include "resource/pictureanswer.h"
#include "support/filtertext.h"
#include "support/hostilepictures.h"
#include "support/packagetext.h"
#include "support/sampleimages.h"

#include <QCoreApplication>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

// The main() of kestrix-decode, compiled under this name.
int kestrixDecodeMain(int argc, char** argv);

namespace {

using namespace Ksx::Core;

constexpr int CannotStart = 127;
constexpr int FirstFree = 10; // the descriptors below are the child's

struct Request
{
    std::string file;
    std::string ending;
    std::string fill;
};

// Returns false at the end of the input.
bool readRequest(Request& request)
{
    return std::getline(std::cin, request.file, '\0') &&
           std::getline(std::cin, request.ending, '\0') &&
           std::getline(std::cin, request.fill, '\0');
}

struct Channels
{
    int picture = -1;
    int answerReading = -1;
    int answerWriting = -1;
    int pixels = -1;
};

int copied(int number)
{
    const int copy = fcntl(number, F_DUPFD_CLOEXEC, FirstFree);
    close(number);
    return copy;
}

Channels openChannels(const std::string& file)
{
    Channels channels;
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) != 0)
        std::exit(CannotStart);
    channels.picture = copied(open(file.c_str(), O_RDONLY | O_CLOEXEC));
    channels.answerReading = copied(ends[0]);
    channels.answerWriting = copied(ends[1]);
    channels.pixels = copied(memfd_create("picture", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    return channels;
}

void closeChannels(const Channels& channels)
{
    close(channels.picture);
    close(channels.answerReading);
    close(channels.pixels);
}

void give(int from, DecodingDescriptor to)
{
    if (dup2(from, static_cast<int>(to)) < 0)
        _exit(CannotStart);
}

// Runs in the child. It has the descriptors of kestrix-decode and no others.
[[noreturn]] void decode(const Channels& channels, Request request)
{
    give(channels.picture, DecodingDescriptor::Picture);
    give(channels.answerWriting, DecodingDescriptor::Answer);
    give(channels.pixels, DecodingDescriptor::Pixels);
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    closefrom(static_cast<int>(DecodingDescriptor::Pixels) + 1);
    char name[] = "kestrix-decode";
    char* argv[] = {name, request.ending.data(), nullptr};
    Trust::guardHeap(static_cast<unsigned char>(std::stoi(request.fill)));
    _exit(kestrixDecodeMain(2, argv));
}

std::uint64_t hashOf(int memory, std::size_t size)
{
    void* const pixels =
        size > 0 ? mmap(nullptr, size, PROT_READ, MAP_SHARED, memory, 0) : MAP_FAILED;
    if (pixels == MAP_FAILED)
        return 0;
    const std::string_view bytes(static_cast<const char*>(pixels), size);
    const std::uint64_t hash = std::hash<std::string_view>()(bytes);
    munmap(pixels, size);
    return hash;
}

void printEnd(const Trust::ChildEnd& end, const Channels& channels)
{
    PictureAnswer answer{0, PictureKind::None, 0, 0};
    const ssize_t known = read(channels.answerReading, &answer, sizeof answer);
    struct stat state = {};
    fstat(channels.pixels, &state);
    const auto bytes = static_cast<std::size_t>(state.st_size);
    Trust::print(end);
    std::printf(" %zd %u %u %u %u %zu %llu\n", known, answer.mark,
                static_cast<unsigned>(answer.kind), answer.width, answer.height, bytes,
                static_cast<unsigned long long>(hashOf(channels.pixels, bytes)));
    std::fflush(stdout);
}

void serve(const Request& request)
{
    const Channels channels = openChannels(request.file);
    const pid_t child = fork();
    if (child == 0)
        decode(channels, request);
    close(channels.answerWriting);
    printEnd(Trust::waitFor(child), channels);
    closeChannels(channels);
}

void write(const std::string& folder, const std::string& name, const char* ending,
           const std::string& bytes)
{
    std::ofstream(folder + '/' + name + '.' + ending, std::ios::binary) << bytes;
}

int writeSamples(const std::string& folder)
{
    for (const TestSupport::ImageFormat& format : TestSupport::imageFormats())
        write(folder, std::string("good") + format.name, format.ending, format.bytes({16, 12}));
    for (const TestSupport::HostilePicture& picture : TestSupport::hostilePictures())
        write(folder, std::string("hostile") + picture.name, picture.ending, picture.bytes());
    write(folder, "goodCamera", "dng", TestSupport::aCameraFile({64, 64}));
    const TestSupport::InputText input = TestSupport::aColorInput("in");
    write(folder, "filter", "obl",
          TestSupport::aPackage()
              .named("wood")
              .containing(TestSupport::FilterText("planks").taking(input).text())
              .text());
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 3 && std::string_view(argv[1]) == "--samples")
        return writeSamples(argv[2]);
    for (Request request; readRequest(request);)
        serve(request);
    return 0;
}
