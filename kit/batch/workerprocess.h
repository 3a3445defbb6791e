// Work in a process of its own, with bounds.
#pragma once

#include "core/descriptor.h"
#include <QByteArray>
#include <QString>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <sys/types.h>
#include <vector>

namespace Ksx::Kit {

struct WorkerBounds
{
    // Of address space, beyond that of this process.
    qint64 megabytes = 0;
    std::chrono::seconds time{0};
};

// A copy of this process that runs a function and hands its answer back. This process must have no
// other thread. The copy writes nothing to standard output and standard error, and it dies with this
// process.
class WorkerProcess
{
public:
    using Clock = std::chrono::steady_clock;

    // Starts the copy. Throws std::runtime_error if the system has no process to give.
    WorkerProcess(const WorkerBounds& bounds, const std::function<QByteArray()>& work);
    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;
    // Ends the copy if it is still there.
    ~WorkerProcess();

    // Waits until at least one of the processes has ended.
    static void waitForOne(const std::vector<WorkerProcess*>& processes);

    bool hasEnded() const { return m_process < 0; }
    // Returns a sentence if the process ended without an answer. Returns an empty text otherwise.
    QString failure() const { return m_failure; }
    const QByteArray& answer() const { return m_answer; }
    double seconds() const { return m_seconds; }

private:
    [[noreturn]] void runCopy(int output, const std::function<QByteArray()>& work) const;
    int millisecondsLeft() const;
    void read();
    void end(bool isTooLate);

    WorkerBounds m_bounds;
    Clock::time_point m_begin = Clock::now();
    pid_t m_process = -1; // -1 once it has ended
    Orv::Core::Descriptor m_input;
    QByteArray m_answer;
    QString m_failure;
    double m_seconds = 0;
};

// A number of processes at a time.
class WorkerPool
{
public:
    using Done = std::function<void(const WorkerProcess&)>;

    explicit WorkerPool(unsigned jobs) : m_jobs(jobs) {}

    bool isEmpty() const { return m_running.empty(); }
    bool isFull() const { return m_running.size() >= m_jobs; }
    // Starts a process. `done` is called by finishOne() when the process has ended.
    void start(const WorkerBounds& bounds, const std::function<QByteArray()>& work, Done done);
    // Waits for the end of a process. There must be one.
    void finishOne();

private:
    struct Running
    {
        std::unique_ptr<WorkerProcess> process;
        Done done;
    };

    std::size_t m_jobs;
    std::vector<Running> m_running;
};

} // namespace Ksx::Kit
