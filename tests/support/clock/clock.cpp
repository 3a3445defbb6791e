// A library to be loaded before all others, for which the clock stands still at CLOCK_AT, in seconds.
#include <cstdlib>
#include <ctime>

extern "C" std::time_t time(std::time_t* timer) noexcept
{
    const char* const text = std::getenv("CLOCK_AT");
    const std::time_t now = text == nullptr ? 0 : std::atol(text);
    if (timer != nullptr)
        *timer = now;
    return now;
}
