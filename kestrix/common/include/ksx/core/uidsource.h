// Where new uids come from: the one place that reads the clock or random numbers.
#pragma once

#include <cstdint>
#include <ctime>
#include <functional>

class QUuid;

namespace Ksx::Core {

using Uid = std::uint32_t;

// Never allotted: it stands for "no uid" where a number is needed.
constexpr Uid NoUid = 0xFFFFFFFFu;

// Uids are the time in seconds plus a counter, in wrapping 32-bit arithmetic: so they differ
// between runs and between uses, and need no other randomness. Where packages are read on several
// threads, uids are given in the order of the packages, one package after the other.
class UidSource
{
public:
    using Clock = std::function<std::time_t()>;
    using Random = std::function<std::uint32_t()>;
    using IsTaken = std::function<bool(Uid)>;

    explicit UidSource(Uid firstCount) : m_counter(firstCount) {}

    // The source of everything but the updater that first gave packages their uids.
    static UidSource& shared();
    // That of the updater, with a counter of its own from 0.
    static UidSource& ofUpdater();
    // Replaces the clock of all sources; an empty function brings the system's back.
    static void setClock(Clock clock);
    // Replaces the random numbers of uuid(), of which all bits count; an empty function brings the
    // system's back.
    static void setRandom(Random random);

    // A random UUID.
    static QUuid uuid();

    // A uid that `isTaken` (may be empty) does not know, and that is not NoUid.
    Uid next(const IsTaken& isTaken);
    void setCounter(Uid count) { m_counter = count; }

private:
    Uid draw();

    Uid m_counter;
};

} // namespace Ksx::Core
