#include "ksx/core/uidsource.h"

#include <utility>

namespace Ksx::Core {

namespace {

constexpr Uid SharedFirstCount = 0xF39AC68Fu;
constexpr Uid StepMask = 0xFF; // how far a clash may move a uid on

UidSource::Clock& clockSeam()
{
    static UidSource::Clock clock;
    return clock;
}

} // namespace

UidSource& UidSource::shared()
{
    static UidSource source(SharedFirstCount);
    return source;
}

UidSource& UidSource::ofUpdater()
{
    static UidSource source(0);
    return source;
}

void UidSource::setClock(Clock clock)
{
    clockSeam() = std::move(clock);
}

Uid UidSource::draw()
{
    const std::time_t now = clockSeam() ? clockSeam()() : std::time(nullptr);
    return static_cast<Uid>(now) + m_counter++;
}

Uid UidSource::next(const IsTaken& isTaken)
{
    Uid uid = draw();
    while (uid == NoUid || (isTaken && isTaken(uid)))
        uid += draw() & StepMask;
    return uid;
}

} // namespace Ksx::Core
