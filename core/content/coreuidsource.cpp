#include "ksx/core/uidsource.h"

#include "core/orderedtasks.h"
#include <QRandomGenerator>
#include <QUuid>
#include <utility>

namespace Ksx::Core {

namespace {

constexpr Uid SharedFirstCount = 0xF39AC68Fu;
constexpr Uid UpdaterFirstCount = 0;
constexpr Uid StepMask = 0xFF; // how far a clash may move a uid on

UidSource::Clock& clockSeam()
{
    static UidSource::Clock clock;
    return clock;
}

UidSource::Random& randomSeam()
{
    static UidSource::Random random;
    return random;
}

UidSource::Follower& followerSeam()
{
    static UidSource::Follower follower;
    return follower;
}

std::uint32_t randomNumber()
{
    return randomSeam() ? randomSeam()() : QRandomGenerator::system()->generate();
}

// One byte of a number, counted from its lowest.
uchar byteOf(std::uint32_t number, int index)
{
    return static_cast<uchar>(number >> (8 * index));
}

} // namespace

UidSource& UidSource::shared()
{
    static UidSource source(SharedFirstCount);
    return source;
}

UidSource& UidSource::ofUpdater()
{
    static UidSource source(UpdaterFirstCount);
    return source;
}

void UidSource::restart()
{
    shared().setCounter(SharedFirstCount);
    ofUpdater().setCounter(UpdaterFirstCount);
}

void UidSource::setClock(Clock clock)
{
    clockSeam() = std::move(clock);
}

void UidSource::setRandom(Random random)
{
    randomSeam() = std::move(random);
}

void UidSource::setFollower(Follower follower)
{
    followerSeam() = std::move(follower);
}

QUuid UidSource::uuid()
{
    Orv::Core::OrderedTasks::awaitTurn();
    const std::uint32_t a = randomNumber();
    const std::uint32_t b = randomNumber();
    const std::uint32_t c = randomNumber();
    const std::uint32_t d = randomNumber();
    const auto version = static_cast<ushort>((b & 0x0FFFu) | 0x4000u); // random
    const auto variant = static_cast<uchar>((c & 0x3Fu) | 0x80u);      // of RFC 4122
    return {a,
            static_cast<ushort>(b >> 16),
            version,
            variant,
            byteOf(c, 1),
            byteOf(c, 2),
            byteOf(c, 3),
            byteOf(d, 0),
            byteOf(d, 1),
            byteOf(d, 2),
            byteOf(d, 3)};
}

Uid UidSource::draw()
{
    const std::time_t now = clockSeam() ? clockSeam()() : std::time(nullptr);
    return static_cast<Uid>(now) + m_counter++;
}

Uid UidSource::next(const IsTaken& isTaken)
{
    Orv::Core::OrderedTasks::awaitTurn();
    Uid uid = draw();
    while (uid == NoUid || (isTaken && isTaken(uid)))
        uid += draw() & StepMask;
    if (followerSeam())
        followerSeam()(uid);
    return uid;
}

} // namespace Ksx::Core
