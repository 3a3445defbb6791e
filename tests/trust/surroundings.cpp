// A library to be loaded before all others, which fixes the surroundings of the tool.
//
// TRUST_TIME is the time in seconds, TRUST_CORES the number of cores that there are to run on.
#include <cstdlib>
#include <ctime>
#include <sched.h>
#include <sys/types.h>

namespace {

long numberIn(const char* variable, long otherwise)
{
    const char* const text = std::getenv(variable);
    return text == nullptr ? otherwise : std::atol(text);
}

} // namespace

extern "C" {

std::time_t time(std::time_t* place) noexcept
{
    const std::time_t now = numberIn("TRUST_TIME", 1);
    if (place != nullptr)
        *place = now;
    return now;
}

int sched_getaffinity(pid_t, std::size_t size, cpu_set_t* cores) noexcept
{
    CPU_ZERO_S(size, cores);
    for (long core = 0; core < numberIn("TRUST_CORES", 1); ++core)
        CPU_SET_S(static_cast<std::size_t>(core), size, cores);
    return 0;
}
}
