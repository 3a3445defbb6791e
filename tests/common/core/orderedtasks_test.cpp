#include "core/orderedtasks.h"

#include <gtest/gtest.h>
#include <atomic>
#include <chrono>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

using Orv::Core::OrderedTasks;

// The numbers that tasks write down.
class Record
{
public:
    void add(int number)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_numbers.push_back(number);
    }
    std::vector<int> numbers() const { return m_numbers; }

private:
    std::mutex m_mutex;
    std::vector<int> m_numbers;
};

void finishAll(OrderedTasks& tasks)
{
    while (tasks.size() > 0)
        tasks.finish();
}

// Adds as many tasks that write down their numbers in their turn. The first ones take longest.
void addTasksInTurn(OrderedTasks& tasks, Record& record, int count)
{
    for (int i = 0; i < count; ++i)
        tasks.add([&record, i, count] {
            std::this_thread::sleep_for(std::chrono::microseconds(count - i));
            OrderedTasks::awaitTurn();
            record.add(i);
        });
}

// Waits for another one: for ever, if that waited for the end of this.
void meet(std::atomic<int>& waiting)
{
    for (++waiting; waiting < 2;)
        std::this_thread::yield();
}

TEST(OrderedTasks, RunInTheOwnersThreadWithoutASecondWorker)
{
    OrderedTasks tasks(1);
    std::vector<std::thread::id> threads;
    const auto remember = [&threads] { threads.push_back(std::this_thread::get_id()); };
    tasks.add(remember);
    tasks.add(remember);
    EXPECT_TRUE(threads.empty());

    finishAll(tasks);

    EXPECT_EQ(threads, std::vector<std::thread::id>(2, std::this_thread::get_id()));
}

TEST(OrderedTasks, RunInTheOwnersThreadWhereEachIsAlone)
{
    OrderedTasks tasks(4);
    std::thread::id thread;
    tasks.add([&thread] { thread = std::this_thread::get_id(); });
    tasks.finish();
    EXPECT_EQ(thread, std::this_thread::get_id());
}

TEST(OrderedTasks, RunAtTheSameTimeInThreads)
{
    OrderedTasks tasks(2);
    std::atomic<int> waiting{0};
    tasks.add([&waiting] { meet(waiting); });
    tasks.add([&waiting] { meet(waiting); });
    finishAll(tasks);
    EXPECT_EQ(waiting, 2);
}

TEST(OrderedTasks, GoOnInTheirOrderFromTheirTurnsOn)
{
    OrderedTasks tasks(8);
    Record record;
    addTasksInTurn(tasks, record, 20);
    finishAll(tasks);
    EXPECT_EQ(record.numbers(), (std::vector<int>{0,  1,  2,  3,  4,  5,  6,  7,  8,  9,
                                                  10, 11, 12, 13, 14, 15, 16, 17, 18, 19}));
}

TEST(OrderedTasks, HaveNoTurnOutsideOfATask)
{
    OrderedTasks::awaitTurn();
    OrderedTasks tasks(2);
    tasks.add([] {});
    OrderedTasks::awaitTurn();
    tasks.finish();
    EXPECT_EQ(tasks.size(), 0u);
}

TEST(OrderedTasks, ThrowWhatTheyHaveThrownWhenTheyAreFinished)
{
    OrderedTasks tasks(2);
    std::atomic<bool> isDone{false};
    tasks.add([] { throw std::runtime_error("first"); });
    tasks.add([&isDone] { isDone = true; });
    EXPECT_THROW(tasks.finish(), std::runtime_error);
    tasks.finish();
    EXPECT_TRUE(isDone);
}

TEST(OrderedTasks, GiveTheTurnOnWhenTheyThrow)
{
    OrderedTasks tasks(2);
    Record record;
    tasks.add([] { throw std::runtime_error("first"); });
    tasks.add([&record] {
        OrderedTasks::awaitTurn();
        record.add(2);
    });
    EXPECT_THROW(tasks.finish(), std::runtime_error);
    tasks.finish();
    EXPECT_EQ(record.numbers(), std::vector<int>{2});
}

TEST(OrderedTasks, AreDroppedWithTheirOwnerBeforeTheyBegin)
{
    int begun = 0;
    {
        OrderedTasks tasks(1);
        tasks.add([&begun] { ++begun; });
        tasks.add([&begun] { ++begun; });
        tasks.finish();
    }
    EXPECT_EQ(begun, 1);
}

TEST(OrderedTasks, EndBeforeTheirOwnerDies)
{
    std::atomic<int> begun{0};
    std::atomic<int> ended{0};
    {
        const auto task = [&] {
            ++begun;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            ++ended;
        };
        OrderedTasks tasks(2);
        tasks.add(task);
        tasks.add(task);
        tasks.add(task);
        tasks.finish();
    }
    EXPECT_GE(begun, 1);
    EXPECT_EQ(ended, begun);
}

TEST(AvailableCores, AreOneOrMore)
{
    EXPECT_GE(Orv::Core::availableCores(), 1u);
}

} // namespace
