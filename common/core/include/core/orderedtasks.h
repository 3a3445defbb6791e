// Runs work on several threads, with the results in the order in which it was ordered.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace Orv::Core {

// Returns the number of cores on which this process may run, at least 1.
unsigned availableCores();

// Begins tasks in the order in which they were added, as many at a time as there are workers.
// Belongs to the thread that made it, which adds tasks and waits for them. While that thread waits in
// finish(), it is one of the workers.
//
// As long as there is no more than one unfinished task, no thread is started: finish() runs the
// task itself. The same holds with fewer than two workers.
class OrderedTasks
{
public:
    using Task = std::function<void()>;

    // Starts no thread yet.
    explicit OrderedTasks(unsigned workers);
    OrderedTasks(const OrderedTasks&) = delete;
    OrderedTasks& operator=(const OrderedTasks&) = delete;
    // Drops tasks that have not begun, and waits for the others.
    ~OrderedTasks();

    // Adds a task behind the others. A worker begins it when the tasks before it have begun.
    void add(Task task);
    // Returns the number of tasks that have been added and not been finished.
    std::size_t size() const { return m_unfinished.size(); }
    // Waits until the first of the unfinished tasks has ended. There must be one. Throws what the
    // task threw; the task counts as finished then, too.
    void finish();

    // Waits until all tasks before the one that calls it have ended. So the code behind the call
    // runs in the order of the tasks. Returns at once outside of a task.
    static void awaitTurn();

private:
    struct Job
    {
        OrderedTasks& owner;
        Task task;
        bool hasEnded = false;
        std::exception_ptr failure = nullptr;
    };

    void start();
    void work();
    void runNext(std::unique_lock<std::mutex>& lock);
    void waitForEnds(std::unique_lock<std::mutex>& lock);
    void waitForTurn(const Job& job);

    static thread_local const Job* s_current; // of this thread; null if it runs none

    const std::size_t m_workers;
    std::vector<std::thread> m_threads;
    std::mutex m_mutex; // guards all below
    std::condition_variable m_isThereWork;
    std::condition_variable m_hasTaskEnded;
    std::size_t m_waiting = 0;    // threads, for the end of a task
    std::deque<Job> m_unfinished; // a job does not move while others come and go at the ends
    std::size_t m_begun = 0;      // of the unfinished ones
    bool m_isClosing = false;
};

} // namespace Orv::Core
