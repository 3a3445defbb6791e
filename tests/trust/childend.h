// The end of a child process, as the servers of runs tell it.
#pragma once

#include <cerrno>
#include <cstdio>
#include <sys/resource.h>
#include <sys/wait.h>

namespace Trust {

struct ChildEnd
{
    int status = 0;
    rusage usage{};
};

inline ChildEnd waitFor(pid_t child)
{
    ChildEnd end;
    while (wait4(child, &end.status, 0, &end.usage) < 0 && errno == EINTR) {
    }
    return end;
}

inline long microseconds(const timeval& time)
{
    return time.tv_sec * 1000000L + time.tv_usec;
}

// Prints the exit code (-1 behind a signal), the signal (0 for none), microseconds of cpu, and
// kilobytes of resident memory at the peak. The caller ends the line.
inline void print(const ChildEnd& end)
{
    std::printf("%d %d %ld %ld", WIFEXITED(end.status) ? WEXITSTATUS(end.status) : -1,
                WIFSIGNALED(end.status) ? WTERMSIG(end.status) : 0,
                microseconds(end.usage.ru_utime) + microseconds(end.usage.ru_stime),
                end.usage.ru_maxrss);
}

} // namespace Trust
