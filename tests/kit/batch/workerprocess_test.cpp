#include "batch/workerprocess.h"

#include <gtest/gtest.h>
#include <csignal>
#include <new>
#include <stdexcept>
#include <unistd.h>

using Ksx::Kit::WorkerBounds;
using Ksx::Kit::WorkerPool;
using Ksx::Kit::WorkerProcess;

namespace {

constexpr WorkerBounds Wide{1 << 20, std::chrono::seconds(600)};

// Runs the work to its end.
class Worked
{
public:
    explicit Worked(const std::function<QByteArray()>& work, const WorkerBounds& bounds = Wide)
        : m_process(bounds, work)
    {
        WorkerProcess::waitForOne({&m_process});
    }
    std::string answer() const { return m_process.answer().toStdString(); }
    std::string failure() const { return m_process.failure().toStdString(); }

private:
    WorkerProcess m_process;
};

} // namespace

TEST(WorkerProcessOfABatch, HandsItsAnswerBack)
{
    const Worked worked([] { return QByteArray("done"); });

    EXPECT_EQ(worked.answer(), "done");
    EXPECT_EQ(worked.failure(), "");
}

TEST(WorkerProcessOfABatch, HandsBackMoreThanAPipeHolds)
{
    const Worked worked([] { return QByteArray(1000000, 'x'); });

    EXPECT_EQ(worked.answer(), std::string(1000000, 'x'));
}

TEST(WorkerProcessOfABatch, ChangesNothingHere)
{
    int value = 1;

    const Worked worked([&] { return QByteArray::number(++value); });

    EXPECT_EQ(worked.answer(), "2");
    EXPECT_EQ(value, 1);
}

TEST(WorkerProcessOfABatch, TellsItsSignal)
{
    const Worked worked([] {
        raise(SIGKILL);
        return QByteArray();
    });

    EXPECT_EQ(worked.failure(), "its process was ended by the signal 9");
}

TEST(WorkerProcessOfABatch, TellsThatItTakesTooLong)
{
    const Worked worked(
        [] {
            pause();
            return QByteArray();
        },
        {1 << 20, std::chrono::seconds(0)});

    EXPECT_EQ(worked.failure(), "it takes more than 0 s");
}

TEST(WorkerProcessOfABatch, TellsThatItHasNoMemory)
{
    const Worked worked([]() -> QByteArray { throw std::bad_alloc(); },
                        {7, std::chrono::seconds(600)});

    EXPECT_EQ(worked.failure(), "it takes more than 7 MiB of memory");
}

TEST(WorkerProcessOfABatch, TellsOfOtherExceptions)
{
    const Worked worked([]() -> QByteArray { throw std::runtime_error("any"); });

    EXPECT_EQ(worked.failure(), "its process ended with the exit code 4");
}

TEST(WorkerProcessOfABatch, KeepsNoFileOpenForItself)
{
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);

    const Worked worked([&] { return QByteArray::number(write(ends[1], "x", 1) < 0); });

    EXPECT_EQ(worked.answer(), "1");
    close(ends[0]);
    close(ends[1]);
}

TEST(WorkerPoolOfABatch, RunsAsManyAsItMay)
{
    WorkerPool pool(2);
    std::string answers;
    const auto note = [&](const WorkerProcess& process) {
        answers += process.answer().toStdString();
    };
    pool.start(
        Wide, [] { return QByteArray("a"); }, note);
    EXPECT_FALSE(pool.isFull());
    pool.start(
        Wide, [] { return QByteArray("a"); }, note);
    EXPECT_TRUE(pool.isFull());

    pool.finishOne();
    pool.finishOne();

    EXPECT_TRUE(pool.isEmpty());
    EXPECT_EQ(answers, "aa");
}
