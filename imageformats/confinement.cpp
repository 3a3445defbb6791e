#include "imageformats/confinement.h"

#include <algorithm>
#include <csignal>
#include <cstddef>
#include <iterator>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#define ORV_IS_SANITIZED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ORV_IS_SANITIZED
#endif
#endif

namespace Orv::ImageFormats {

namespace {

#if defined(__x86_64__)
constexpr unsigned Architecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr unsigned Architecture = AUDIT_ARCH_AARCH64;
#else
constexpr unsigned Architecture = 0; // its numbers of system calls are not known here
#endif

// The other set of system calls on this architecture, x32, has numbers from here on.
constexpr unsigned FirstForeignCall = 0x40000000;

// What decoding needs: memory, the open descriptors, the time, and an end. None of these calls
// reaches a file by its name; newfstatat() and statx() only learn whether there is one.
constexpr int AllowedCalls[] = {
    SYS_brk,          SYS_mmap,           SYS_munmap,        SYS_mremap,
    SYS_mprotect,     SYS_madvise,        SYS_read,          SYS_readv,
    SYS_pread64,      SYS_lseek,          SYS_fstat,         SYS_newfstatat,
    SYS_statx,        SYS_write,          SYS_ftruncate,     SYS_close,
    SYS_futex,        SYS_sched_yield,    SYS_clock_gettime, SYS_gettimeofday,
    SYS_getrandom,    SYS_getpid,         SYS_gettid,        SYS_rt_sigaction,
    SYS_rt_sigreturn, SYS_rt_sigprocmask, SYS_exit,          SYS_exit_group,
    SYS_sigaltstack, // of the address sanitizer, when something is thrown
};

sock_filter statement(unsigned code, unsigned value)
{
    return BPF_STMT(static_cast<unsigned short>(code), value);
}

// Skips as many instructions as the two say.
sock_filter jump(unsigned comparison, unsigned value, unsigned char ifTrue, unsigned char ifFalse)
{
    return BPF_JUMP(static_cast<unsigned short>(BPF_JMP | comparison | BPF_K), value, ifTrue,
                    ifFalse);
}

// All other calls fail. A process that survives this goes on without them: a library may ask for
// the number of processors, and can live without the answer.
std::vector<sock_filter> filterProgram()
{
    constexpr unsigned LoadWord = BPF_LD | BPF_W | BPF_ABS;
    constexpr unsigned Return = BPF_RET | BPF_K;
    constexpr unsigned Refuse = SECCOMP_RET_ERRNO | EPERM;
    std::vector<sock_filter> program{
        statement(LoadWord, offsetof(seccomp_data, arch)),
        jump(BPF_JEQ, Architecture, 1, 0),
        statement(Return, SECCOMP_RET_KILL_PROCESS),
        statement(LoadWord, offsetof(seccomp_data, nr)),
        jump(BPF_JGE, FirstForeignCall, 0, 1),
        statement(Return, Refuse),
    };
    for (const int call : AllowedCalls) {
        program.push_back(jump(BPF_JEQ, static_cast<unsigned>(call), 0, 1));
        program.push_back(statement(Return, SECCOMP_RET_ALLOW));
    }
    program.push_back(statement(Return, Refuse));
    return program;
}

void filterCalls()
{
    if (Architecture == 0 || prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        return;
    std::vector<sock_filter> instructions = filterProgram();
    const sock_fprog program{static_cast<unsigned short>(instructions.size()), instructions.data()};
    prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program, 0, 0);
}

// The first value ends the process by a signal that can be ignored, the second by one that cannot.
// A lower limit that this process has already stays.
bool limit(int resource, quint64 value, quint64 last)
{
    const auto name = static_cast<__rlimit_resource_t>(resource);
    rlimit bound = {};
    if (getrlimit(name, &bound) != 0)
        return false;
    bound.rlim_max = std::min<rlim_t>(bound.rlim_max, last);
    bound.rlim_cur = std::min<rlim_t>(bound.rlim_cur, value);
    return setrlimit(name, &bound) == 0;
}

bool limit(int resource, quint64 value)
{
    return limit(resource, value, value);
}

} // namespace

#ifdef ORV_IS_SANITIZED
const bool IsMemoryLimited = false;
#else
const bool IsMemoryLimited = true;
#endif

bool confine(const ConfinementLimits& limits)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    // Without this, a machine that hands dumps to a program makes them whatever the limit is.
    prctl(PR_SET_DUMPABLE, 0);
    const bool isLimited =
        limit(RLIMIT_CPU, limits.processorSeconds, limits.processorSeconds + 1) &&
        (!IsMemoryLimited || limit(RLIMIT_AS, limits.memory)) &&
        limit(RLIMIT_FSIZE, limits.written) && limit(RLIMIT_CORE, 0) && limit(RLIMIT_NOFILE, 0) &&
        limit(RLIMIT_NPROC, 0);
    filterCalls();
    return isLimited;
}

} // namespace Orv::ImageFormats
