// A library to be loaded before all others, which makes calls of the system fail.
//
// FAULTS names the calls that fail, with commas between them: "sync:1:EIO" for the first fsync,
// "alloc:70" for the seventieth allocation, "read:3+:EIO" for the third read and every later one.
// Without an error it is EIO, and ENOMEM for an allocation. In place of an error there may be:
//
//   KILL    the process is killed before the call
//   KILLED  the process is killed when the call has been made
//   SHORT   read, pread and write are asked for half of the bytes; other calls are made as ever
//
// A word may be named twice. It stands for several calls, and "any" for all of them but alloc:
//
//   alloc   malloc, calloc, realloc and the aligned ones     open    open, openat
//   sync    fsync, fdatasync, syncfs                         read    read, pread
//   rename  rename, renameat, renameat2                      write   write, writev
//   mode    chmod, fchmod          owner   chown, fchown     close   close
//   link    link, linkat           trunc   ftruncate         remove  unlink, unlinkat, rmdir
//   stat    stat, lstat, fstat, fstatat, statx               access  access, faccessat
//   place   getcwd, readlink, realpath                       seek    lseek
//   extra   llistxattr, lgetxattr, fsetxattr, fremovexattr   flush   fflush
//   control fcntl
//
// FAULT_COUNTS names a file to which the number of calls of each word is written at the end.
// The calls that the C library makes inside of itself are its own: neither counted nor failed. So are
// the calls of libraries that set themselves up, before anything of the program runs, and those that
// are made when main() has returned, such as for the counters of tests.
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/xattr.h>
#include <type_traits>
#include <unistd.h>

namespace {

enum Call
{
    Alloc,
    Open,
    Read,
    Write,
    Sync,
    Close,
    Rename,
    Link,
    Mode,
    Owner,
    Truncate,
    Remove,
    Stat,
    Access,
    Place,
    Seek,
    Extra,
    Flush,
    Control,
    Any,
    CallCount,
};

constexpr std::array<std::string_view, CallCount> Words = {
    "alloc", "open",   "read", "write",  "sync",  "close", "rename", "link",  "mode",    "owner",
    "trunc", "remove", "stat", "access", "place", "seek",  "extra",  "flush", "control", "any"};

// Numbers that no error has.
enum Deed
{
    Kill = -1,
    KillAfterwards = -2,
    Shorten = -3,
};

struct ErrorName
{
    std::string_view name;
    int number;
};
constexpr ErrorName Errors[] = {
    {"EIO", EIO},       {"ENOSPC", ENOSPC},   {"EDQUOT", EDQUOT},        {"ENOMEM", ENOMEM},
    {"EINTR", EINTR},   {"EACCES", EACCES},   {"EPERM", EPERM},          {"EINVAL", EINVAL},
    {"EROFS", EROFS},   {"EMFILE", EMFILE},   {"EXDEV", EXDEV},          {"ENOENT", ENOENT},
    {"EEXIST", EEXIST}, {"ENODATA", ENODATA}, {"ENOSYS", ENOSYS},        {"EOPNOTSUPP", EOPNOTSUPP},
    {"KILL", Kill},     {"SHORT", Shorten},   {"KILLED", KillAfterwards}};

// Nothing here may allocate: the allocator calls it.
struct Plan
{
    unsigned long first = 0; // the number of the call that fails; 0 for none
    bool isLasting = false;  // all later calls fail as well
    int error = EIO;         // or a deed

    bool isAt(unsigned long number) const
    {
        return first != 0 && (isLasting ? number >= first : number == first);
    }
};

// Of each word, in the order in which FAULTS names them.
constexpr std::size_t MostPlans = 2;
std::array<std::array<Plan, MostPlans>, CallCount> plans;
std::array<std::atomic<unsigned long>, CallCount> counts;
bool isRunning = false; // libraries are set up, and main() has not returned

std::string_view takeUntil(std::string_view& text, char end)
{
    const std::size_t place = text.find(end);
    const std::string_view part = text.substr(0, place);
    text.remove_prefix(place == std::string_view::npos ? text.size() : place + 1);
    return part;
}

void planOne(std::string_view text)
{
    const std::string_view word = takeUntil(text, ':');
    std::string_view number = takeUntil(text, ':');
    for (std::size_t call = 0; call < CallCount; ++call) {
        if (Words[call] != word)
            continue;
        Plan& plan = plans[call][plans[call].front().first == 0 ? 0 : 1];
        plan.isLasting = !number.empty() && number.back() == '+';
        for (const char digit : number)
            if (digit >= '0' && digit <= '9')
                plan.first = plan.first * 10 + static_cast<unsigned long>(digit - '0');
        plan.error = call == Alloc ? ENOMEM : EIO;
        for (const ErrorName& error : Errors)
            if (error.name == text)
                plan.error = error.number;
    }
}

void readPlans()
{
    isRunning = true;
    const char* const text = std::getenv("FAULTS");
    std::string_view rest = text == nullptr ? "" : text;
    while (!rest.empty())
        planOne(takeUntil(rest, ','));
}

int plannedFor(Call call, unsigned long number)
{
    for (const Plan& plan : plans[call])
        if (plan.isAt(number))
            return plan.error;
    return 0;
}

// Counts the call. Returns the error or the deed that is planned for it, or 0.
int countCall(Call call)
{
    if (!isRunning)
        return 0;
    const unsigned long number = ++counts[call];
    const unsigned long numberOfAny = call == Alloc ? 0 : ++counts[Any];
    const int fault = plannedFor(Any, numberOfAny);
    return fault != 0 ? fault : plannedFor(call, number);
}

[[noreturn]] void die()
{
    for (;;)
        kill(getpid(), SIGKILL);
}

// A call that the program makes. It is counted when this is made.
class Attempt
{
public:
    explicit Attempt(Call call) : m_fault(countCall(call))
    {
        if (m_fault == Kill)
            die();
    }
    // Returns true, with errno set, for a call that is to fail.
    bool fails() const
    {
        if (m_fault > 0)
            errno = m_fault;
        return m_fault > 0;
    }
    // Returns how many bytes to ask for: at least one, so that it does not look like an end.
    std::size_t shortened(std::size_t size) const
    {
        return m_fault == Shorten ? (size + 1) / 2 : size;
    }
    // Returns the result of the call, if the process lives on.
    template <class Result>
    Result ended(Result result) const
    {
        if (m_fault == KillAfterwards)
            die();
        return result;
    }

private:
    int m_fault;
};

bool fails(Call call)
{
    return Attempt(call).fails();
}

// Returns the result of a call that has failed.
template <class Result>
Result failure()
{
    if constexpr (std::is_pointer_v<Result>)
        return nullptr;
    else
        return -1;
}

// The function that the name has without this library. Calls from before it is found are those of
// dlsym() itself.
template <class Function>
Function* next(Function*& found, const char* name)
{
    if (found == nullptr)
        found = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
    return found;
}

__attribute__((destructor)) void writeCounts()
{
    const char* const path = std::getenv("FAULT_COUNTS");
    if (path == nullptr)
        return;
    std::array<unsigned long, CallCount> numbers{};
    for (std::size_t call = 0; call < CallCount; ++call)
        numbers[call] = counts[call];
    plans = {};
    FILE* const file = std::fopen(path, "w");
    if (file == nullptr)
        return;
    for (std::size_t call = 0; call < CallCount; ++call)
        std::fprintf(file, "%s %lu\n", Words[call].data(), numbers[call]);
    std::fclose(file);
}

} // namespace

// The C library's own names for its allocator: dlsym() allocates, so it cannot be asked for these.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);

void* malloc(std::size_t size)
{
    return fails(Alloc) ? nullptr : __libc_malloc(size);
}
void* calloc(std::size_t count, std::size_t size)
{
    return fails(Alloc) ? nullptr : __libc_calloc(count, size);
}
void* realloc(void* block, std::size_t size)
{
    return fails(Alloc) ? nullptr : __libc_realloc(block, size);
}
void* memalign(std::size_t alignment, std::size_t size)
{
    return fails(Alloc) ? nullptr : __libc_memalign(alignment, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size)
{
    return fails(Alloc) ? nullptr : __libc_memalign(alignment, size);
}
int posix_memalign(void** block, std::size_t alignment, std::size_t size)
{
    *block = fails(Alloc) ? nullptr : __libc_memalign(alignment, size);
    return *block == nullptr ? ENOMEM : 0;
}

#define ORV_FAULT_OF_SIZE(call, result, name, parameters, arguments, asked)                        \
    result name parameters                                                                         \
    {                                                                                              \
        static result(*found) parameters = nullptr;                                                \
        const Attempt attempt(call);                                                               \
        asked;                                                                                     \
        return attempt.fails() ? failure<result>() : attempt.ended(next(found, #name) arguments);  \
    }
#define ORV_FAULT(call, result, name, parameters, arguments)                                       \
    ORV_FAULT_OF_SIZE(call, result, name, parameters, arguments, )

ORV_FAULT_OF_SIZE(Read, ssize_t, read, (int file, void* data, std::size_t size), (file, data, size),
                  size = attempt.shortened(size))
ORV_FAULT_OF_SIZE(Read, ssize_t, pread, (int file, void* data, std::size_t size, off_t place),
                  (file, data, size, place), size = attempt.shortened(size))
ORV_FAULT_OF_SIZE(Read, ssize_t, pread64, (int file, void* data, std::size_t size, off64_t place),
                  (file, data, size, place), size = attempt.shortened(size))
ORV_FAULT_OF_SIZE(Write, ssize_t, write, (int file, const void* data, std::size_t size),
                  (file, data, size), size = attempt.shortened(size))
ORV_FAULT(Write, ssize_t, writev, (int file, const iovec* parts, int count), (file, parts, count))
ORV_FAULT(Sync, int, fsync, (int file), (file))
ORV_FAULT(Sync, int, fdatasync, (int file), (file))
ORV_FAULT(Sync, int, syncfs, (int file) noexcept, (file))
ORV_FAULT(Rename, int, rename, (const char* from, const char* to) noexcept, (from, to))
ORV_FAULT(Rename, int, renameat, (int a, const char* from, int b, const char* to) noexcept,
          (a, from, b, to))
ORV_FAULT(Rename, int, renameat2,
          (int a, const char* from, int b, const char* to, unsigned flags) noexcept,
          (a, from, b, to, flags))
ORV_FAULT(Link, int, link, (const char* from, const char* to) noexcept, (from, to))
ORV_FAULT(Link, int, linkat, (int a, const char* from, int b, const char* to, int flags) noexcept,
          (a, from, b, to, flags))
ORV_FAULT(Mode, int, chmod, (const char* path, mode_t mode) noexcept, (path, mode))
ORV_FAULT(Mode, int, fchmod, (int file, mode_t mode) noexcept, (file, mode))
ORV_FAULT(Owner, int, chown, (const char* path, uid_t user, gid_t group) noexcept,
          (path, user, group))
ORV_FAULT(Owner, int, fchown, (int file, uid_t user, gid_t group) noexcept, (file, user, group))
ORV_FAULT(Truncate, int, ftruncate, (int file, off_t size) noexcept, (file, size))
ORV_FAULT(Truncate, int, ftruncate64, (int file, off64_t size) noexcept, (file, size))
ORV_FAULT(Remove, int, unlink, (const char* path) noexcept, (path))
ORV_FAULT(Remove, int, unlinkat, (int folder, const char* path, int flags) noexcept,
          (folder, path, flags))
ORV_FAULT(Remove, int, rmdir, (const char* path) noexcept, (path))
ORV_FAULT(Stat, int, stat, (const char* path, struct stat* status) noexcept, (path, status))
ORV_FAULT(Stat, int, stat64, (const char* path, struct stat64* status) noexcept, (path, status))
ORV_FAULT(Stat, int, lstat, (const char* path, struct stat* status) noexcept, (path, status))
ORV_FAULT(Stat, int, lstat64, (const char* path, struct stat64* status) noexcept, (path, status))
ORV_FAULT(Stat, int, fstat, (int file, struct stat* status) noexcept, (file, status))
ORV_FAULT(Stat, int, fstat64, (int file, struct stat64* status) noexcept, (file, status))
ORV_FAULT(Stat, int, fstatat, (int a, const char* path, struct stat* status, int flags) noexcept,
          (a, path, status, flags))
ORV_FAULT(Stat, int, fstatat64,
          (int a, const char* path, struct stat64* status, int flags) noexcept,
          (a, path, status, flags))
ORV_FAULT(Stat, int, statx,
          (int a, const char* path, int flags, unsigned mask, struct statx* status) noexcept,
          (a, path, flags, mask, status))
ORV_FAULT(Access, int, access, (const char* path, int mode) noexcept, (path, mode))
ORV_FAULT(Access, int, faccessat, (int a, const char* path, int mode, int flags) noexcept,
          (a, path, mode, flags))
ORV_FAULT(Place, char*, getcwd, (char* path, std::size_t size) noexcept, (path, size))
ORV_FAULT(Place, ssize_t, readlink, (const char* path, char* text, std::size_t size) noexcept,
          (path, text, size))
ORV_FAULT(Place, char*, realpath, (const char* path, char* result) noexcept, (path, result))
ORV_FAULT(Seek, off_t, lseek, (int file, off_t place, int from) noexcept, (file, place, from))
ORV_FAULT(Seek, off64_t, lseek64, (int file, off64_t place, int from) noexcept, (file, place, from))
ORV_FAULT(Extra, ssize_t, llistxattr, (const char* path, char* list, std::size_t size) noexcept,
          (path, list, size))
ORV_FAULT(Extra, ssize_t, lgetxattr,
          (const char* path, const char* name, void* value, std::size_t size) noexcept,
          (path, name, value, size))
ORV_FAULT(Extra, int, fsetxattr,
          (int file, const char* name, const void* value, std::size_t size, int flags) noexcept,
          (file, name, value, size, flags))
ORV_FAULT(Extra, int, fremovexattr, (int file, const char* name) noexcept, (file, name))
ORV_FAULT(Flush, int, fflush, (FILE * file), (file))

// The argument, a number or an address, is handed on as it comes.
#define ORV_FAULT_CONTROL(name)                                                                    \
    int name(int file, int command, ...)                                                           \
    {                                                                                              \
        va_list list;                                                                              \
        va_start(list, command);                                                                   \
        void* const argument = va_arg(list, void*);                                                \
        va_end(list);                                                                              \
        static int (*found)(int, int, ...) = nullptr;                                              \
        const Attempt attempt(Control);                                                            \
        return attempt.fails() ? -1 : attempt.ended(next(found, #name)(file, command, argument));  \
    }

ORV_FAULT_CONTROL(fcntl)
ORV_FAULT_CONTROL(fcntl64)
#undef ORV_FAULT_CONTROL

#undef ORV_FAULT
#undef ORV_FAULT_OF_SIZE

int __libc_start_main(int (*main)(int, char**, char**), int argc, char** argv, void (*init)(),
                      void (*fini)(), void (*end)(), void* stack)
{
    readPlans();
    static int (*program)(int, char**, char**) = main;
    const auto run = [](int count, char** words, char** environment) {
        const int code = program(count, words, environment);
        isRunning = false;
        return code;
    };
    static int (*found)(int (*)(int, char**, char**), int, char**, void (*)(), void (*)(),
                        void (*)(), void*) = nullptr;
    return next(found, "__libc_start_main")(run, argc, argv, init, fini, end, stack);
}

// The descriptor is closed whatever the answer is, as the system does it.
int close(int file)
{
    static int (*found)(int) = nullptr;
    const Attempt attempt(Close);
    const int result = attempt.ended(next(found, "close")(file));
    return attempt.fails() ? -1 : result;
}

#define ORV_FAULT_OPEN(name, parameters, arguments)                                                \
    int name parameters                                                                            \
    {                                                                                              \
        va_list list;                                                                              \
        va_start(list, flags);                                                                     \
        const mode_t mode = (flags & (O_CREAT | __O_TMPFILE)) != 0 ? va_arg(list, mode_t) : 0;     \
        va_end(list);                                                                              \
        static int(*found) parameters = nullptr;                                                   \
        const Attempt attempt(Open);                                                               \
        return attempt.fails() ? -1 : attempt.ended(next(found, #name) arguments);                 \
    }

ORV_FAULT_OPEN(open, (const char* path, int flags, ...), (path, flags, mode))
ORV_FAULT_OPEN(open64, (const char* path, int flags, ...), (path, flags, mode))
ORV_FAULT_OPEN(openat, (int folder, const char* path, int flags, ...), (folder, path, flags, mode))
ORV_FAULT_OPEN(openat64, (int folder, const char* path, int flags, ...),
               (folder, path, flags, mode))

#undef ORV_FAULT_OPEN
}
