#include "batch/workerprocess.h"

#include <gtest/gtest.h>
#include <algorithm>
#include <csignal>
#include <new>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

using Ksx::Kit::Work;
using Ksx::Kit::WorkerBounds;
using Ksx::Kit::WorkerPool;
using Ksx::Kit::WorkerProcess;
using Ksx::Kit::WorkerResult;

namespace {

constexpr WorkerBounds Wide{1 << 20, std::chrono::seconds(600)};

// Does one task.
class Worked
{
public:
    explicit Worked(const Work& work, const WorkerBounds& bounds = Wide) : m_process(work)
    {
        m_process.ask("request", bounds);
        WorkerProcess::waitForOne({&m_process});
        m_result = m_process.takeResult();
    }
    std::string answer() const { return m_result.answer.toStdString(); }
    std::string failure() const { return m_result.failure.toStdString(); }
    bool hasEnded() const { return m_process.hasEnded(); }

private:
    WorkerProcess m_process;
    WorkerResult m_result;
};

// Waits for the first task of a process.
WorkerResult resultOf(WorkerProcess& process)
{
    WorkerProcess::waitForOne({&process});
    return process.takeResult();
}

} // namespace

TEST(WorkerProcessOfABatch, HandsItsAnswerBack)
{
    const Worked worked([](const QByteArray&) { return QByteArray("done"); });

    EXPECT_EQ(worked.answer(), "done");
    EXPECT_EQ(worked.failure(), "");
}

TEST(WorkerProcessOfABatch, HandsBackMoreThanAPipeHolds)
{
    const Worked worked([](const QByteArray&) { return QByteArray(1000000, 'x'); });

    EXPECT_EQ(worked.answer(), std::string(1000000, 'x'));
}

TEST(WorkerProcessOfABatch, ChangesNothingHere)
{
    int value = 1;

    const Worked worked([&](const QByteArray&) { return QByteArray::number(++value); });

    EXPECT_EQ(worked.answer(), "2");
    EXPECT_EQ(value, 1);
}

TEST(WorkerProcessOfABatch, TellsItsSignal)
{
    const Worked worked([](const QByteArray&) {
        raise(SIGKILL);
        return QByteArray();
    });

    EXPECT_EQ(worked.failure(), "its process was ended by the signal 9");
}

TEST(WorkerProcessOfABatch, TellsThatItTakesTooLong)
{
    const Worked worked(
        [](const QByteArray&) {
            pause();
            return QByteArray();
        },
        {1 << 20, std::chrono::seconds(0)});

    EXPECT_EQ(worked.failure(), "it takes more than 0 s");
}

TEST(WorkerProcessOfABatch, TellsThatItHasNoMemory)
{
    const Worked worked([](const QByteArray&) -> QByteArray { throw std::bad_alloc(); },
                        {7, std::chrono::seconds(600)});

    EXPECT_EQ(worked.failure(), "it takes more than 7 MiB of memory");
}

TEST(WorkerProcessOfABatch, TellsOfOtherExceptions)
{
    const Worked worked([](const QByteArray&) -> QByteArray { throw std::runtime_error("any"); });

    EXPECT_EQ(worked.failure(), "its process ended with the exit code 4");
}

TEST(WorkerProcessOfABatch, KeepsNoFileOpenForItself)
{
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);

    const Worked worked(
        [&](const QByteArray&) { return QByteArray::number(write(ends[1], "x", 1) < 0); });

    EXPECT_EQ(worked.answer(), "1");
    close(ends[0]);
    close(ends[1]);
}

TEST(WorkerProcessOfABatch, AnswersRequestsOneAfterTheOther)
{
    int asked = 0;
    WorkerProcess process(
        [&](const QByteArray& request) { return request + QByteArray::number(++asked); });
    process.ask("a", Wide);
    process.ask("b", Wide);

    EXPECT_EQ(resultOf(process).answer.toStdString(), "a1");
    EXPECT_EQ(resultOf(process).answer.toStdString(), "b2");
    EXPECT_TRUE(process.isIdle());
}

TEST(WorkerProcessOfABatch, TakesRequestsOfAnySize)
{
    WorkerProcess process([](const QByteArray& request) { return request; });

    process.ask(QByteArray(3000000, 'x'), Wide);

    EXPECT_EQ(resultOf(process).answer.size(), 3000000);
}

#ifndef __SANITIZE_ADDRESS__ // which ends the process where memory is missing
TEST(WorkerProcessOfABatch, HasTheBoundOfEachTaskAnew)
{
    constexpr WorkerBounds Narrow{64, std::chrono::seconds(600)};
    const Worked keeping([](const QByteArray&) {
        rlimit limit = {};
        getrlimit(RLIMIT_AS, &limit);
        return QByteArray(limit.rlim_cur == RLIM_INFINITY ? "none" : "some");
    });
    WorkerProcess process([](const QByteArray& request) {
        static std::vector<QByteArray> kept;
        kept.emplace_back(request.toInt() << 20, 'x');
        return QByteArray::number(qulonglong(kept.size()));
    });
    process.ask("48", Narrow);
    process.ask("48", Narrow);
    process.ask("80", Narrow);

    EXPECT_EQ(keeping.answer(), "some");
    EXPECT_EQ(resultOf(process).answer.toStdString(), "1");
    EXPECT_EQ(resultOf(process).answer.toStdString(), "2");
    EXPECT_EQ(resultOf(process).failure.toStdString(), "it takes more than 64 MiB of memory");
}
#endif

TEST(WorkerProcessOfABatch, EndsBehindATaskThatMadeItLarge)
{
    const Worked small([](const QByteArray&) { return QByteArray("small"); });
    const Worked large([](const QByteArray&) {
        static std::vector<QByteArray> kept;
        kept.emplace_back(600 << 20, Qt::Uninitialized);
        return QByteArray("large");
    });

    EXPECT_FALSE(small.hasEnded());
    EXPECT_TRUE(large.hasEnded());
    EXPECT_EQ(large.answer(), "large");
    EXPECT_EQ(large.failure(), "");
}

TEST(WorkerPoolOfABatch, TakesOneTaskMoreThanAProcessWorksOn)
{
    WorkerPool pool(1, [](const QByteArray& request) { return request; });
    std::string answers;
    const auto note = [&](const WorkerResult& result) { answers += result.answer.toStdString(); };

    pool.start("a", Wide, note);
    EXPECT_FALSE(pool.isFull());
    pool.start("b", Wide, note);
    EXPECT_TRUE(pool.isFull());
    pool.finishOne();
    EXPECT_FALSE(pool.isFull());
    pool.finishOne();

    EXPECT_TRUE(pool.isEmpty());
    EXPECT_EQ(answers, "ab");
}

TEST(WorkerPoolOfABatch, HandsOutAndTakesBackManyBytes)
{
    WorkerPool pool(1, [](const QByteArray& request) { return request + request; });
    qint64 size = 0;
    const auto note = [&](const WorkerResult& result) { size += result.answer.size(); };

    pool.start(QByteArray(3000000, 'x'), Wide, note);
    pool.start(QByteArray(3000000, 'x'), Wide, note);
    pool.finishOne();
    pool.finishOne();

    EXPECT_EQ(size, 12000000);
}

TEST(WorkerPoolOfABatch, WorksInAsManyProcessesAsItMay)
{
    WorkerPool pool(2, [](const QByteArray&) { return QByteArray::number(getpid()); });
    std::vector<QByteArray> processes;
    const auto note = [&](const WorkerResult& result) { processes.push_back(result.answer); };

    pool.start({}, Wide, note);
    pool.start({}, Wide, note);
    pool.finishOne();
    pool.finishOne();
    pool.start({}, Wide, note);
    pool.finishOne();

    EXPECT_NE(processes[0], processes[1]);
    EXPECT_EQ(std::count(processes.begin(), processes.end(), processes[2]), 2);
}

TEST(WorkerPoolOfABatch, GoesOnBehindATaskThatEndsItsProcess)
{
    WorkerPool pool(1, [](const QByteArray& request) {
        if (request == "bad")
            raise(SIGKILL);
        return request;
    });
    std::string answers;
    const auto note = [&](const WorkerResult& result) {
        answers += result.answer.toStdString() + result.failure.toStdString() + '\n';
    };

    pool.start("bad", Wide, note);
    pool.start("good", Wide, note);
    pool.finishOne();
    pool.finishOne();

    EXPECT_EQ(answers, "its process was ended by the signal 9\ngood\n");
}
