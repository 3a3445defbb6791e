#include "batch/workerprocess.h"

#include <QFile>
#include <algorithm>
#include <climits>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <malloc.h>
#include <new>
#include <poll.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace Ksx::Kit {

namespace {

using Orv::Core::Descriptor;
using Orv::Core::uninterrupted;

constexpr rlim_t Megabyte = 1 << 20;
// How much larger a copy may become before another one takes its place.
constexpr rlim_t MostGrowth = 256 * Megabyte;

// Exit codes of a copy.
constexpr int HasEnded = 0;
constexpr int NeedsMemory = 3;
constexpr int HasThrown = 4;

// What goes in front of the bytes of a request or an answer.
struct Header
{
    qint64 size = 0;
    // Of a request.
    qint64 megabytes = 0;
    // Of an answer.
    double seconds = 0;
    bool isLast = false;
};

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point begin)
{
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

// Writes to a socket. Returns false if its other end is closed.
bool isSent(const Descriptor& socket, const char* bytes, std::size_t size)
{
    while (size > 0) {
        const auto count =
            uninterrupted([&] { return send(socket.number(), bytes, size, MSG_NOSIGNAL); });
        if (count < 0)
            return false;
        bytes += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

bool isSent(const Descriptor& socket, Header header, const QByteArray& bytes)
{
    header.size = bytes.size();
    return isSent(socket, reinterpret_cast<const char*>(&header), sizeof(header)) &&
           isSent(socket, bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

// Fills the bytes from a socket. Returns false if its other end is closed.
bool isReceived(const Descriptor& socket, char* bytes, std::size_t size)
{
    while (size > 0) {
        const auto count = uninterrupted([&] { return recv(socket.number(), bytes, size, 0); });
        if (count <= 0)
            return false;
        bytes += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

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

// Closes all files but one, such as those whose locks this process shall not keep. Returns the new
// number of that one.
Descriptor keepOnly(const Descriptor& file)
{
    constexpr int Kept = STDERR_FILENO + 1;
    if (file.number() != Kept)
        dup2(file.number(), Kept);
    close_range(Kept + 1, ~0U, 0);
    return Descriptor(Kept);
}

void silence()
{
    const int nowhere = open("/dev/null", O_RDWR);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        dup2(nowhere, stream);
}

// Answers requests until there are no more.
void answerRequests(const Descriptor& socket, const Work& work)
{
    const rlim_t space = presentSpace();
    Header header;
    while (isReceived(socket, reinterpret_cast<char*>(&header), sizeof(header))) {
        QByteArray request(static_cast<int>(header.size), Qt::Uninitialized);
        if (!isReceived(socket, request.data(), static_cast<std::size_t>(request.size())))
            return;
        setLimit(RLIMIT_AS, presentSpace() + static_cast<rlim_t>(header.megabytes) * Megabyte);
        const auto begin = Clock::now();
        const QByteArray answer = work(request);
        header.seconds = secondsSince(begin);
        setLimit(RLIMIT_AS, RLIM_INFINITY);
        header.isLast = presentSpace() > space + MostGrowth;
        if (!isSent(socket, header, answer) || header.isLast)
            return;
    }
}

// Is the copy.
[[noreturn]] void runCopy(const Descriptor& socket, const Work& work)
{
    int code = HasEnded;
    try {
        const Descriptor kept = keepOnly(socket);
        silence();
#ifdef __GLIBC__
        // Documents are millions of small blocks, and joining freed ones costs more than it gives.
        mallopt(M_MXFAST, 0);
#endif
        setLimit(RLIMIT_CORE, 0);
        answerRequests(kept, work);
    } catch (const std::bad_alloc&) {
        code = NeedsMemory;
    } catch (...) {
        code = HasThrown;
    }
    _exit(code); // without the end of all that the copy has in common with its origin
}

} // namespace

WorkerProcess::WorkerProcess(const Work& work)
{
    int ends[2] = {};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        throw std::runtime_error("the system has no socket to give");
    m_socket = Descriptor(ends[0]);
    const Descriptor other(ends[1]);
    const pid_t parent = getpid();
    m_process = fork();
    if (m_process < 0)
        throw std::runtime_error("the system has no process to give");
    if (m_process > 0)
        return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) // it died before the call
        _exit(HasThrown);
    runCopy(other, work);
}

WorkerProcess::~WorkerProcess()
{
    if (!hasEnded()) {
        kill(m_process, SIGKILL);
        stop();
    }
}

void WorkerProcess::ask(const QByteArray& request, const WorkerBounds& bounds)
{
    if (m_tasks.empty())
        m_begin = Clock::now();
    m_tasks.push_back(bounds);
    // A process that has ended is noticed when its answer is read.
    isSent(m_socket, Header{0, bounds.megabytes}, request);
}

WorkerResult WorkerProcess::takeResult()
{
    WorkerResult result = std::move(*m_result);
    m_result.reset();
    m_tasks.pop_front();
    m_begin = Clock::now();
    findAnswer();
    return result;
}

int WorkerProcess::millisecondsLeft() const
{
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        m_begin + m_tasks.front().time - Clock::now());
    return static_cast<int>(std::clamp<std::chrono::milliseconds::rep>(left.count(), 0, INT_MAX));
}

void WorkerProcess::waitForOne(const std::vector<WorkerProcess*>& processes)
{
    const auto isOneReady = [&] {
        return std::any_of(processes.begin(), processes.end(),
                           [](const WorkerProcess* process) { return process->hasResult(); });
    };
    while (!isOneReady()) {
        std::vector<pollfd> inputs;
        int wait = INT_MAX;
        for (const WorkerProcess* process : processes) {
            inputs.push_back({process->m_socket.number(), POLLIN, 0});
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
        uninterrupted([&] { return recv(m_socket.number(), bytes, sizeof(bytes), 0); });
    if (count <= 0) {
        end(false);
        return;
    }
    m_received.append(bytes, static_cast<int>(count));
    findAnswer();
}

void WorkerProcess::findAnswer()
{
    Header header;
    if (m_received.size() < static_cast<int>(sizeof(header)))
        return;
    std::memcpy(&header, m_received.constData(), sizeof(header));
    const qint64 size = static_cast<qint64>(sizeof(header)) + header.size;
    if (m_received.size() < size)
        return;
    m_result = WorkerResult{
        m_received.mid(sizeof(header), static_cast<int>(header.size)), {}, header.seconds};
    m_received.remove(0, static_cast<int>(size));
    if (header.isLast)
        stop();
}

// Ends a process that does not answer.
void WorkerProcess::end(bool isTooLate)
{
    if (isTooLate)
        kill(m_process, SIGKILL);
    const int status = stop();
    const WorkerBounds& bounds = m_tasks.front();
    QString failure;
    if (isTooLate)
        failure = QStringLiteral("it takes more than %1 s").arg(bounds.time.count());
    else if (WIFSIGNALED(status))
        failure = QStringLiteral("its process was ended by the signal %1").arg(WTERMSIG(status));
    else if (WEXITSTATUS(status) == NeedsMemory)
        failure = QStringLiteral("it takes more than %1 MiB of memory").arg(bounds.megabytes);
    else
        failure =
            QStringLiteral("its process ended with the exit code %1").arg(WEXITSTATUS(status));
    m_result = WorkerResult{{}, failure, secondsSince(m_begin)};
}

// Waits for the end of the process. Returns its status.
int WorkerProcess::stop()
{
    int status = 0;
    m_socket.close();
    uninterrupted([&] { return waitpid(m_process, &status, 0); });
    m_process = -1;
    return status;
}

bool WorkerPool::isEmpty() const
{
    return std::all_of(m_workers.begin(), m_workers.end(),
                       [](const Worker& worker) { return worker.tasks.empty(); });
}

bool WorkerPool::isFull() const
{
    constexpr std::size_t TasksOfAProcess = 2;
    return m_workers.size() == m_jobs &&
           std::all_of(m_workers.begin(), m_workers.end(),
                       [](const Worker& worker) { return worker.tasks.size() == TasksOfAProcess; });
}

void WorkerPool::start(const QByteArray& request, const WorkerBounds& bounds, Done done)
{
    start({request, bounds, std::move(done)});
}

void WorkerPool::start(Task task)
{
    auto worker =
        std::min_element(m_workers.begin(), m_workers.end(), [](const Worker& a, const Worker& b) {
            return a.tasks.size() < b.tasks.size();
        });
    if (m_workers.size() < m_jobs && (worker == m_workers.end() || !worker->tasks.empty())) {
        m_workers.push_back({std::make_unique<WorkerProcess>(m_work), {}});
        worker = m_workers.end() - 1;
    }
    worker->tasks.push_back(std::move(task));
    askNext(*worker);
}

// Hands the last task to the process, if the process can take it now.
void WorkerPool::askNext(const Worker& worker)
{
    constexpr int SmallRequest = 16384;
    const bool areSmall =
        std::all_of(worker.tasks.begin(), worker.tasks.end(),
                    [](const Task& task) { return task.request.size() < SmallRequest; });
    if (worker.process->isIdle() || areSmall)
        worker.process->ask(worker.tasks.back().request, worker.tasks.back().bounds);
}

void WorkerPool::finishOne()
{
    std::vector<WorkerProcess*> busy;
    for (const Worker& worker : m_workers)
        if (!worker.tasks.empty())
            busy.push_back(worker.process.get());
    WorkerProcess::waitForOne(busy);
    const auto worker = std::find_if(m_workers.begin(), m_workers.end(),
                                     [](const Worker& one) { return one.process->hasResult(); });
    const WorkerResult result = worker->process->takeResult();
    const Task task = std::move(worker->tasks.front());
    worker->tasks.pop_front();
    if (worker->process->hasEnded()) {
        std::deque<Task> left = std::move(worker->tasks);
        m_workers.erase(worker);
        for (Task& one : left)
            start(std::move(one));
    } else if (!worker->tasks.empty() && worker->process->isIdle()) {
        askNext(*worker);
    }
    task.done(result);
}

} // namespace Ksx::Kit
