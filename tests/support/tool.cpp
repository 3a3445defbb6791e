#include "support/tool.h"
#include "support/paths.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <grp.h>
#include <ostream>
#include <poll.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace TestSupport {

namespace {

constexpr int CannotStart = 127;

struct Pipe
{
    Pipe()
    {
        if (pipe2(ends.data(), O_CLOEXEC) != 0)
            throw std::system_error(errno, std::generic_category(), "pipe");
    }
    ~Pipe()
    {
        closeEnd(0);
        closeEnd(1);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    void closeEnd(std::size_t end)
    {
        if (ends[end] >= 0)
            close(ends[end]);
        ends[end] = -1;
    }

    std::array<int, 2> ends{-1, -1}; // to read from, to write to
};

// Appends what has come; closes the pipe at its end.
void drain(Pipe& pipe, std::string& text)
{
    std::array<char, 65536> block;
    const ssize_t count = read(pipe.ends[0], block.data(), block.size());
    if (count > 0)
        text.append(block.data(), static_cast<std::size_t>(count));
    else if (count == 0 || errno != EINTR)
        pipe.closeEnd(0);
}

void readBoth(Pipe& out, Pipe& err, ToolRun& run)
{
    while (out.ends[0] >= 0 || err.ends[0] >= 0) {
        std::array<pollfd, 2> waited{{{out.ends[0], POLLIN, 0}, {err.ends[0], POLLIN, 0}}};
        if (poll(waited.data(), waited.size(), -1) < 0)
            continue;
        if (waited[0].revents != 0)
            drain(out, run.out);
        if (waited[1].revents != 0)
            drain(err, run.err);
    }
}

std::vector<char*> pointersTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

// Leaves the process the first of its cores.
bool stayOnOneCore()
{
    cpu_set_t cores;
    if (sched_getaffinity(0, sizeof cores, &cores) != 0)
        return false;
    int first = 0;
    while (!CPU_ISSET(first, &cores))
        ++first;
    CPU_ZERO(&cores);
    CPU_SET(first, &cores);
    return sched_setaffinity(0, sizeof cores, &cores) == 0;
}

bool dropRights()
{
    return setgroups(0, nullptr) == 0 && setgid(NobodyId) == 0 && setuid(NobodyId) == 0;
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const ToolRun& run)
{
    return stream << "exit " << run.exitCode << ", signal " << run.signal << ", out \"" << run.out
                  << "\", err \"" << run.err << "\"";
}

Tool& Tool::calledAs(const std::string& name)
{
    m_name = name;
    return *this;
}

Tool& Tool::at(const std::string& executable)
{
    m_executable = executable;
    return *this;
}

Tool& Tool::withEnvironment(const std::string& name, const std::string& value)
{
    m_environment[name] = value;
    return *this;
}

Tool& Tool::withoutRootRights()
{
    m_dropsRights = isRoot();
    if (m_dropsRights) // the temporary folder of root may be his own
        m_environment.emplace("TMPDIR", P_tmpdir);
    return *this;
}

Tool& Tool::withFaults(const std::string& plan)
{
    m_preloaded.emplace_back("kestrix_faults.so");
    return onOneCore().withEnvironment("FAULTS", plan);
}

Tool& Tool::withClockAt(long seconds)
{
    m_preloaded.emplace_back("kestrix_clock.so");
    return withEnvironment("CLOCK_AT", std::to_string(seconds));
}

Tool& Tool::onOneCore()
{
    m_isOnOneCore = true;
    return *this;
}

Tool& Tool::withInputFrom(const std::string& path)
{
    m_input = path;
    return *this;
}

Tool& Tool::withOutputTo(const std::string& path)
{
    m_output = path;
    return *this;
}

Tool& Tool::withoutStream(int descriptor)
{
    m_closedStream = descriptor;
    return *this;
}

Tool& Tool::inDeletedDirectory()
{
    m_deletesDirectory = true;
    return *this;
}

// Runs in the child.
bool Tool::prepare(int out, int err) const
{
    for (const auto& [name, value] : m_environment)
        setenv(name.c_str(), value.c_str(), 1);
    const int input = open(m_input.c_str(), O_RDONLY);
    const int output = m_output.empty() ? out : open(m_output.c_str(), O_WRONLY);
    return dup2(input, STDIN_FILENO) >= 0 && dup2(output, STDOUT_FILENO) >= 0 &&
           dup2(err, STDERR_FILENO) >= 0 && (m_closedStream < 0 || close(m_closedStream) == 0) &&
           (!m_isOnOneCore || stayOnOneCore()) && (!m_dropsRights || dropRights()) &&
           chdir(m_directory.c_str()) == 0 &&
           (!m_deletesDirectory || rmdir(m_directory.c_str()) == 0);
}

ToolRun Tool::run(const Arguments& arguments) const
{
    std::vector<std::string> words{m_name};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const std::vector<char*> argv = pointersTo(words);
    Pipe out;
    Pipe err;
    // Opened with the rights of the test, so that another user can run it wherever it lies.
    const int program = open(m_executable.c_str(), O_RDONLY | O_CLOEXEC);
    std::vector<int> libraries;
    std::string preloaded;
    for (const std::string& name : m_preloaded) {
        libraries.push_back(open(buildPath(name).c_str(), O_RDONLY));
        preloaded += "/proc/self/fd/" + std::to_string(libraries.back()) + ' ';
    }

    const pid_t child = fork();
    if (child == 0) {
        // The open documents live until the process ends, which is no leak. Tests bound the memory of
        // the tool, and freed memory shall not count for much of it.
        setenv("ASAN_OPTIONS", "detect_leaks=0:quarantine_size_mb=16:verify_asan_link_order=0", 0);
        if (!preloaded.empty())
            setenv("LD_PRELOAD", preloaded.c_str(), 1);
        if (prepare(out.ends[1], err.ends[1]))
            fexecve(program, argv.data(), environ);
        _exit(CannotStart);
    }
    close(program);
    for (const int library : libraries)
        close(library);
    if (child < 0)
        throw std::system_error(errno, std::generic_category(), "fork");

    out.closeEnd(1);
    err.closeEnd(1);
    ToolRun run;
    readBoth(out, err, run);
    int status = 0;
    rusage usage{};
    while (wait4(child, &status, 0, &usage) < 0 && errno == EINTR) {
    }
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    run.peakKilobytes = usage.ru_maxrss;
    return run;
}

std::string Tool::executable()
{
    return toolPath();
}

bool Tool::isRoot()
{
    return geteuid() == 0;
}

ToolRun runTool(const std::string& directory, const Arguments& arguments)
{
    return Tool(directory).run(arguments);
}

} // namespace TestSupport
