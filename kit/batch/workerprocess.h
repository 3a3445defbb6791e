// Work in processes of their own, with bounds.
#pragma once

#include "core/descriptor.h"
#include <QByteArray>
#include <QString>
#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <sys/types.h>
#include <vector>

namespace Ksx::Kit {

// The bounds of one task.
struct WorkerBounds
{
    // Of address space, beyond that of the process when the task begins.
    qint64 megabytes = 0;
    std::chrono::seconds time{0};
};

// Returns the answer to a request. Runs in another process.
using Work = std::function<QByteArray(const QByteArray& request)>;

// What has become of a task.
struct WorkerResult
{
    QByteArray answer;
    // A sentence if the process ended without an answer. Empty otherwise.
    QString failure;
    double seconds = 0;
};

// A copy of this process that does tasks one after the other. This process must have no other
// thread. The copy writes nothing to standard output and standard error, and it dies with this
// process.
class WorkerProcess
{
public:
    // Starts the copy. Throws std::runtime_error if the system has no process to give.
    explicit WorkerProcess(const Work& work);
    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;
    // Ends the copy if it is still there.
    ~WorkerProcess();

    // Adds a task. The process must be there. If it has a task already, both requests must be less
    // than 16 kB: two processes that write large ones to each other would wait for ever.
    void ask(const QByteArray& request, const WorkerBounds& bounds);
    // Waits until at least one of the processes has the result of its first task. Each of them must
    // have a task.
    static void waitForOne(const std::vector<WorkerProcess*>& processes);

    // Returns true if the result of the first task is there.
    bool hasResult() const { return m_result.has_value(); }
    // Returns the result of the first task and removes the task. The result must be there.
    WorkerResult takeResult();
    // Returns true if no task is left.
    bool isIdle() const { return m_tasks.empty(); }
    // Returns true once the process is not there any more. It does the tasks that are left no more.
    bool hasEnded() const { return m_process < 0; }

private:
    using Clock = std::chrono::steady_clock;

    int millisecondsLeft() const;
    void read();
    void findAnswer();
    void end(bool isTooLate);
    int stop();

    pid_t m_process = -1; // -1 once it has ended
    Orv::Core::Descriptor m_socket;
    std::deque<WorkerBounds> m_tasks;
    Clock::time_point m_begin; // of the first task
    QByteArray m_received;
    std::optional<WorkerResult> m_result;
};

// A number of processes at a time, each of which does many tasks.
class WorkerPool
{
public:
    using Done = std::function<void(const WorkerResult&)>;

    WorkerPool(unsigned jobs, Work work) : m_jobs(jobs), m_work(std::move(work)) {}

    // Returns true if no task is left.
    bool isEmpty() const;
    // Returns true if no process takes another task. A process takes one more than it works on, so
    // that it need not wait for this process.
    bool isFull() const;
    // Adds a task. `done` is called by finishOne() when the task has ended. The pool must not be
    // full. Throws std::runtime_error if the system has no process to give.
    void start(const QByteArray& request, const WorkerBounds& bounds, Done done);
    // Waits for the end of a task. There must be one.
    void finishOne();

private:
    struct Task
    {
        QByteArray request;
        WorkerBounds bounds;
        Done done;
    };
    struct Worker
    {
        std::unique_ptr<WorkerProcess> process;
        std::deque<Task> tasks; // of which the process may not know the last one yet
    };

    void start(Task task);
    static void askNext(const Worker& worker);

    std::size_t m_jobs;
    Work m_work;
    std::vector<Worker> m_workers;
};

} // namespace Ksx::Kit
