#include "resource/picturedecoder.h"

#include "core/descriptor.h"
#include "core/moduleplace.h"
#include "data/filename.h"
#include "resource/pictureanswer.h"
#include <QFile>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace Ksx::Core {

namespace {

using Clock = std::chrono::steady_clock;
using Orv::Core::Descriptor;

// Returns a copy with a number that none of the child's descriptors has.
Descriptor copied(int number)
{
    constexpr int FirstFree = 10;
    return Descriptor(fcntl(number, F_DUPFD_CLOEXEC, FirstFree));
}

struct Pipe
{
    Descriptor reading;
    Descriptor writing;
};

Pipe makePipe()
{
    std::array<int, 2> ends{-1, -1};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return Pipe();
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

Descriptor makeMemory()
{
    return Descriptor(memfd_create("picture", MFD_CLOEXEC | MFD_ALLOW_SEALING));
}

// The descriptors of a process that is started: what it is given, and nothing else.
class SpawnActions
{
public:
    SpawnActions() { note(posix_spawn_file_actions_init(&m_actions)); }
    ~SpawnActions() { posix_spawn_file_actions_destroy(&m_actions); }
    SpawnActions(const SpawnActions&) = delete;
    SpawnActions& operator=(const SpawnActions&) = delete;

    void give(const Descriptor& from, DecodingDescriptor to)
    {
        note(posix_spawn_file_actions_adddup2(&m_actions, from.number(), static_cast<int>(to)));
    }
    void silence(int number)
    {
        note(posix_spawn_file_actions_addopen(&m_actions, number, "/dev/null", O_WRONLY, 0));
    }
    void closeFrom(int number)
    {
        note(posix_spawn_file_actions_addclosefrom_np(&m_actions, number));
    }
    // False if there was no memory for one of them.
    bool isComplete() const { return m_isComplete; }
    const posix_spawn_file_actions_t* get() const { return &m_actions; }

private:
    void note(int error) { m_isComplete = m_isComplete && error == 0; }

    posix_spawn_file_actions_t m_actions{};
    bool m_isComplete = true;
};

// No signal is blocked or ignored, whatever this process does with its own.
class SpawnAttributes
{
public:
    SpawnAttributes()
    {
        posix_spawnattr_init(&m_attributes);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
        sigset_t set;
        sigemptyset(&set);
        posix_spawnattr_setsigmask(&m_attributes, &set);
        sigfillset(&set);
        posix_spawnattr_setsigdefault(&m_attributes, &set);
    }
    ~SpawnAttributes() { posix_spawnattr_destroy(&m_attributes); }
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;

    const posix_spawnattr_t* get() const { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes{};
};

// A child that does not outlive this object.
class ChildProcess
{
public:
    explicit ChildProcess(pid_t number) : m_number(number) {}
    ~ChildProcess()
    {
        if (waitpid(m_number, nullptr, WNOHANG) != 0) // its number may be another's by now
            return;
        kill(m_number, SIGKILL);
        while (waitpid(m_number, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

private:
    pid_t m_number;
};

// Returns the number of the process, or nothing if it cannot be started.
std::optional<pid_t> start(const QString& program, const QString& ending,
                           const SpawnActions& actions)
{
    std::string path = Orv::toBytes(program);
    std::string word = Orv::toBytes(ending);
    // Libraries shall not make threads, which are forbidden there.
    char threads[] = "OMP_NUM_THREADS=1";
    // Bytes of a picture that a decoder forgets to write are zeros in every run.
    char zeros[] = "GLIBC_TUNABLES=glibc.malloc.perturb=255:glibc.malloc.tcache_count=0";
    const std::array<char*, 3> arguments{path.data(), word.data(), nullptr};
    const std::array<char*, 3> environment{threads, zeros, nullptr};
    pid_t number = -1;
    const int error = posix_spawn(&number, path.c_str(), actions.get(), SpawnAttributes().get(),
                                  arguments.data(), environment.data());
    return error == 0 ? std::optional<pid_t>(number) : std::nullopt;
}

// Waits until there is something to read, or the end, or the time is over.
bool waitFor(const Descriptor& source, Clock::time_point end)
{
    for (;;) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        if (left <= 0)
            return false;
        pollfd waited{source.number(), POLLIN, 0};
        const int count = poll(&waited, 1, static_cast<int>(left));
        if (count > 0)
            return true;
        if (count < 0 && errno != EINTR)
            return false;
    }
}

// Returns what the process says, or nothing if it ends or is silent before it has said all of it.
std::optional<PictureAnswer> readAnswer(const Descriptor& source,
                                        std::chrono::milliseconds patience)
{
    const Clock::time_point end = Clock::now() + patience;
    PictureAnswer answer;
    std::size_t known = 0;
    while (known < sizeof answer && waitFor(source, end)) {
        const ssize_t count =
            read(source.number(), reinterpret_cast<char*>(&answer) + known, sizeof answer - known);
        if (count == 0 || (count < 0 && errno != EINTR))
            return std::nullopt;
        known += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return known == sizeof answer ? std::optional<PictureAnswer>(answer) : std::nullopt;
}

bool isSound(const PictureAnswer& answer)
{
    const std::uint64_t pixels = std::uint64_t(answer.width) * answer.height;
    const bool hasPicture =
        answer.kind == PictureKind::Exact || answer.kind == PictureKind::Degraded;
    return answer.mark == PictureAnswerMark && hasPicture && pixels > 0 &&
           pixels <= MaximumPicturePixels;
}

// Returns the picture whose pixels are in the memory. Null if there are more or less of them, or if
// somebody could still change them.
std::shared_ptr<const DecodedPicture> pictureIn(const Descriptor& memory,
                                                const PictureAnswer& answer)
{
    const std::uint64_t bytes = std::uint64_t(answer.width) * answer.height * PixelSize;
    struct stat state = {};
    if (fcntl(memory.number(), F_ADD_SEALS,
              F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL) != 0 ||
        fstat(memory.number(), &state) != 0 || state.st_size < 0 ||
        static_cast<std::uint64_t>(state.st_size) != bytes)
        return nullptr;
    const void* const pixels = mmap(nullptr, bytes, PROT_READ, MAP_PRIVATE, memory.number(), 0);
    if (pixels == MAP_FAILED)
        return nullptr;
    const QSize size(static_cast<int>(answer.width), static_cast<int>(answer.height));
    return std::make_shared<DecodedPicture>(pixels, size, answer.kind == PictureKind::Degraded);
}

} // namespace

DecodedPicture::DecodedPicture(const void* pixels, QSize size, bool isDegraded)
    : m_pixels(pixels), m_size(size), m_isDegraded(isDegraded)
{}

DecodedPicture::~DecodedPicture()
{
    munmap(const_cast<void*>(m_pixels),
           std::size_t(m_size.width()) * std::size_t(m_size.height()) * PixelSize);
}

QString PictureDecoder::program()
{
    return Orv::Core::modulePlace(QStringLiteral("kestrix-decode"));
}

PictureDecoder::PictureDecoder(QString program, std::chrono::milliseconds patience)
    : m_program(std::move(program)), m_patience(patience)
{}

std::shared_ptr<const DecodedPicture> PictureDecoder::decode(const QFile& file,
                                                             const QString& ending) const
{
    Pipe pipe = makePipe();
    const Descriptor memory = makeMemory();
    const Descriptor picture = copied(file.handle());
    Descriptor answering = copied(pipe.writing.number());
    const Descriptor pixels = copied(memory.number());
    if (!picture.isOpen() || !answering.isOpen() || !pixels.isOpen())
        return nullptr;

    SpawnActions actions;
    actions.give(picture, DecodingDescriptor::Picture);
    actions.silence(STDOUT_FILENO);
    actions.silence(STDERR_FILENO);
    actions.give(answering, DecodingDescriptor::Answer);
    actions.give(pixels, DecodingDescriptor::Pixels);
    actions.closeFrom(static_cast<int>(DecodingDescriptor::Pixels) + 1);
    const std::optional<pid_t> number =
        actions.isComplete() ? start(m_program, ending, actions) : std::nullopt;
    if (!number)
        return nullptr;

    std::optional<PictureAnswer> answer;
    {
        const ChildProcess child(*number);
        pipe.writing.close(); // so that the end is seen when the child dies
        answering.close();
        answer = readAnswer(pipe.reading, m_patience);
    }
    return answer && isSound(*answer) ? pictureIn(memory, *answer) : nullptr;
}

} // namespace Ksx::Core
