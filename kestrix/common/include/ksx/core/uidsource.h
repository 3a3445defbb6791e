// New uids. This is the only place that reads the clock or random numbers.
#pragma once

#include <cstdint>
#include <ctime>
#include <functional>

class QUuid;

namespace Ksx::Core {

// The number of an object in its list, or of a dependency in its package.
using Uid = std::uint32_t;

// The number that means "no uid". No object gets it.
constexpr Uid NoUid = 0xFFFFFFFFu;

// Allots uids. A uid is the time in seconds plus a counter, in wrapping 32-bit arithmetic. So uids
// differ between runs and between uses, without other randomness.
//
// Not locked: main thread. Packages that are read on several threads draw in turn, one package
// after the other. For this next() and uuid() wait in a task of OrderedTasks until it is the first
// one that has not ended.
class UidSource
{
public:
    // Returns the time in seconds.
    using Clock = std::function<std::time_t()>;
    // Returns a random number of which all bits count.
    using Random = std::function<std::uint32_t()>;
    // Is given a uid that has been drawn.
    using Follower = std::function<void(Uid)>;
    // Returns whether a uid has an owner already.
    using IsTaken = std::function<bool(Uid)>;

    // Starts the counter at a number. Programs use shared().
    explicit UidSource(Uid firstCount) : m_counter(firstCount) {}

    // Returns the source of all uids, except the uids of one updater. It lives to the end of the
    // process.
    static UidSource& shared();

    // Returns the source of the updater that first gave packages their uids. Its counter starts at
    // 0.
    static UidSource& ofUpdater();

    // Sets the counters of shared() and ofUpdater() to those of a new process. The next uids then do
    // not depend on work that was done before. Main thread.
    static void restart();

    // Replaces the clock of all sources, for tests. An empty function brings the clock of the
    // system back.
    static void setClock(Clock clock);

    // Replaces the random numbers of uuid(), for tests. An empty function brings the numbers of the
    // system back.
    static void setRandom(Random random);

    // Calls the function for each uid that next() returns from now on, in the order of the uids. The
    // call may come in any thread, one at a time. An empty function ends that. Main thread.
    static void setFollower(Follower follower);

    // Returns a random UUID.
    static QUuid uuid();

    // Returns a uid that `isTaken` does not know, and that is not NoUid. `isTaken` may be empty. If
    // it knows all uids, the search never ends.
    Uid next(const IsTaken& isTaken);
    // Sets the counter, for tests.
    void setCounter(Uid count) { m_counter = count; }

private:
    Uid draw();

    Uid m_counter;
};

} // namespace Ksx::Core
