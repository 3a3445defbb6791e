#include "core/orderedtasks.h"

#include <QtGlobal>
#include <algorithm>
#include <system_error>
#include <utility>
#ifdef __linux__
#include <sched.h>
#endif

namespace Orv::Core {

thread_local const OrderedTasks::Job* OrderedTasks::s_current = nullptr;

unsigned availableCores()
{
#ifdef __linux__
    cpu_set_t cores;
    if (sched_getaffinity(0, sizeof cores, &cores) == 0)
        return static_cast<unsigned>(std::max(CPU_COUNT(&cores), 1));
#endif
    return std::max(std::thread::hardware_concurrency(), 1U);
}

OrderedTasks::OrderedTasks(unsigned workers) : m_workers(workers) {}

OrderedTasks::~OrderedTasks()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isClosing = true;
    }
    m_isThereWork.notify_all();
    for (std::thread& thread : m_threads)
        thread.join();
}

void OrderedTasks::add(Task task)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_unfinished.push_back({*this, std::move(task)});
    }
    if (m_threads.empty() && m_unfinished.size() > 1 && m_workers > 1)
        start();
    m_isThereWork.notify_one();
}

// One worker is the owner's thread. Fewer threads do the same work later.
void OrderedTasks::start()
{
    m_threads.reserve(m_workers - 1);
    try {
        while (m_threads.size() < m_workers - 1)
            m_threads.emplace_back(&OrderedTasks::work, this);
    } catch (const std::system_error&) {
    }
}

void OrderedTasks::finish()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    Q_ASSERT(!m_unfinished.empty());
    Job& job = m_unfinished.front();
    while (!job.hasEnded) {
        if (m_begun < m_unfinished.size())
            runNext(lock);
        else
            waitForEnds(lock);
    }
    const std::exception_ptr failure = std::exchange(job.failure, nullptr);
    m_unfinished.pop_front();
    --m_begun;
    lock.unlock();
    if (failure != nullptr)
        std::rethrow_exception(failure);
}

void OrderedTasks::work()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_isThereWork.wait(lock, [this] { return m_isClosing || m_begun < m_unfinished.size(); });
        if (m_isClosing)
            return;
        runNext(lock);
    }
}

// Runs the first task that has not begun. There must be one.
void OrderedTasks::runNext(std::unique_lock<std::mutex>& lock)
{
    Job& job = m_unfinished[m_begun];
    ++m_begun;
    lock.unlock();
    const Job* const outer = std::exchange(s_current, &job);
    std::exception_ptr failure;
    try {
        job.task();
        job.task = nullptr; // with what it holds
    } catch (...) {
        failure = std::current_exception();
    }
    s_current = outer;
    lock.lock();
    job.failure = failure;
    job.hasEnded = true;
    if (m_waiting > 0)
        m_hasTaskEnded.notify_all();
}

// Waits until a task ends.
void OrderedTasks::waitForEnds(std::unique_lock<std::mutex>& lock)
{
    ++m_waiting;
    m_hasTaskEnded.wait(lock);
    --m_waiting;
}

void OrderedTasks::awaitTurn()
{
    if (s_current != nullptr)
        s_current->owner.waitForTurn(*s_current);
}

void OrderedTasks::waitForTurn(const Job& job)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    const auto firstAtWork = [this] {
        return &*std::find_if(m_unfinished.begin(), m_unfinished.end(),
                              [](const Job& other) { return !other.hasEnded; });
    };
    while (firstAtWork() != &job)
        waitForEnds(lock);
}

} // namespace Orv::Core
