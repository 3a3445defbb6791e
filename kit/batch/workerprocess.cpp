#include "batch/workerprocess.h"

#include <QFile>
#include <algorithm>
#include <climits>
#include <csignal>
#include <fcntl.h>
#include <malloc.h>
#include <new>
#include <poll.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace Ksx::Kit {

namespace {

using Orv::Core::uninterrupted;

// Exit codes of a copy.
constexpr int Answered = 0;
constexpr int NeedsMemory = 3;
constexpr int HasThrown = 4;

// Returns the address space of this process in bytes.
rlim_t presentSpace()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().split(' ').front().toULongLong() *
           static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
}

void setLimit(__rlimit_resource resource, rlim_t value)
{
    rlimit limit = {};
    if (getrlimit(resource, &limit) != 0)
        return;
    limit.rlim_cur = std::min(value, limit.rlim_max);
    setrlimit(resource, &limit);
}

// Closes all files but the output, such as those whose locks this process shall not keep. Returns
// the new number of the output.
int keepOutput(int output)
{
    constexpr int Kept = STDERR_FILENO + 1;
    if (output != Kept)
        dup2(output, Kept);
    close_range(Kept + 1, ~0U, 0);
    return Kept;
}

void silence()
{
    const int nowhere = open("/dev/null", O_RDWR);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        dup2(nowhere, stream);
}

} // namespace

WorkerProcess::WorkerProcess(const WorkerBounds& bounds, const std::function<QByteArray()>& work)
    : m_bounds(bounds)
{
    int ends[2] = {};
    if (pipe2(ends, O_CLOEXEC) != 0)
        throw std::runtime_error("the system has no pipe to give");
    m_input = Orv::Core::Descriptor(ends[0]);
    const Orv::Core::Descriptor output(ends[1]);
    const pid_t parent = getpid();
    m_process = fork();
    if (m_process < 0)
        throw std::runtime_error("the system has no process to give");
    if (m_process > 0)
        return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) // it died before the call
        _exit(HasThrown);
    runCopy(output.number(), work);
}

WorkerProcess::~WorkerProcess()
{
    if (!hasEnded()) {
        kill(m_process, SIGKILL);
        uninterrupted([this] { return waitpid(m_process, nullptr, 0); });
    }
}

void WorkerProcess::runCopy(int output, const std::function<QByteArray()>& work) const
{
    int code = HasThrown;
    try {
        output = keepOutput(output);
        silence();
#ifdef __GLIBC__
        // Documents are millions of small blocks, and joining freed ones costs more than it gives.
        mallopt(M_MXFAST, 0);
#endif
        constexpr rlim_t Megabyte = 1 << 20;
        setLimit(RLIMIT_CORE, 0);
        setLimit(RLIMIT_AS, presentSpace() + static_cast<rlim_t>(m_bounds.megabytes) * Megabyte);
        const QByteArray answer = work();
        const char* next = answer.constData();
        const char* const end = next + answer.size();
        while (next < end) {
            const auto count = uninterrupted(
                [&] { return write(output, next, static_cast<std::size_t>(end - next)); });
            if (count < 0)
                _exit(HasThrown);
            next += count;
        }
        code = Answered;
    } catch (const std::bad_alloc&) {
        code = NeedsMemory;
    } catch (...) {
        code = HasThrown;
    }
    _exit(code); // without the end of all that the copy has in common with its origin
}

int WorkerProcess::millisecondsLeft() const
{
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        m_begin + m_bounds.time - Clock::now());
    return static_cast<int>(std::clamp<std::chrono::milliseconds::rep>(left.count(), 0, INT_MAX));
}

void WorkerProcess::waitForOne(const std::vector<WorkerProcess*>& processes)
{
    const auto hasOneEnded = [&] {
        return std::any_of(processes.begin(), processes.end(),
                           [](const WorkerProcess* process) { return process->hasEnded(); });
    };
    while (!hasOneEnded()) {
        std::vector<pollfd> inputs;
        int wait = INT_MAX;
        for (const WorkerProcess* process : processes) {
            inputs.push_back({process->m_input.number(), POLLIN, 0});
            wait = std::min(wait, process->millisecondsLeft());
        }
        poll(inputs.data(), inputs.size(), wait);
        for (std::size_t i = 0; i < processes.size(); ++i) {
            if (inputs[i].revents != 0)
                processes[i]->read();
            else if (processes[i]->millisecondsLeft() == 0)
                processes[i]->end(true);
        }
    }
}

void WorkerProcess::read()
{
    char bytes[65536];
    const auto count =
        uninterrupted([&] { return ::read(m_input.number(), bytes, sizeof(bytes)); });
    if (count > 0)
        m_answer.append(bytes, static_cast<int>(count));
    else
        end(false);
}

void WorkerProcess::end(bool isTooLate)
{
    if (isTooLate)
        kill(m_process, SIGKILL);
    int status = 0;
    uninterrupted([&] { return waitpid(m_process, &status, 0); });
    m_process = -1;
    m_seconds = std::chrono::duration<double>(Clock::now() - m_begin).count();
    if (isTooLate)
        m_failure = QStringLiteral("it takes more than %1 s").arg(m_bounds.time.count());
    else if (WIFSIGNALED(status))
        m_failure = QStringLiteral("its process was ended by the signal %1").arg(WTERMSIG(status));
    else if (WEXITSTATUS(status) == NeedsMemory)
        m_failure = QStringLiteral("it takes more than %1 MiB of memory").arg(m_bounds.megabytes);
    else if (WEXITSTATUS(status) != Answered)
        m_failure =
            QStringLiteral("its process ended with the exit code %1").arg(WEXITSTATUS(status));
}

void WorkerPool::start(const WorkerBounds& bounds, const std::function<QByteArray()>& work,
                       Done done)
{
    m_running.push_back({std::make_unique<WorkerProcess>(bounds, work), std::move(done)});
}

void WorkerPool::finishOne()
{
    std::vector<WorkerProcess*> processes;
    for (const Running& running : m_running)
        processes.push_back(running.process.get());
    WorkerProcess::waitForOne(processes);
    const auto ended = std::find_if(m_running.begin(), m_running.end(), [](const Running& running) {
        return running.process->hasEnded();
    });
    const Running running = std::move(*ended);
    m_running.erase(ended);
    running.done(*running.process);
}

} // namespace Ksx::Kit
