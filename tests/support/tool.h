// Runs the built tool as a process of its own.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace TestSupport {

using Arguments = std::vector<std::string>;

struct ToolRun
{
    int exitCode = -1; // -1 if a signal ended the process
    int signal = 0;    // 0 if none did
    std::string out;
    std::string err;
    long peakKilobytes = 0; // of resident memory
};

// "exit 1, signal 0, out "...", err "..."", as failures print it.
std::ostream& operator<<(std::ostream& stream, const ToolRun& run);

class Tool
{
public:
    // Runs in that directory.
    explicit Tool(std::string directory) : m_directory(std::move(directory)) {}

    // What the program is told that it is called, instead of "tool".
    Tool& calledAs(const std::string& name);
    // Another copy of the executable.
    Tool& at(const std::string& executable);
    Tool& withEnvironment(const std::string& name, const std::string& value);
    // As a user without rights, if the test itself has those of root.
    Tool& withoutRootRights();
    // On one core the tool has no worker threads.
    Tool& onOneCore();
    // Its calls of the system, which one thread makes, fail as tests/support/faults/faults.cpp says.
    Tool& withFaults(const std::string& plan);
    // The clock stands still for it, at a number of seconds: its uids are those of any other such run.
    Tool& withClockAt(long seconds);
    // Standard input comes from that file, and is empty otherwise.
    Tool& withInputFrom(const std::string& path);
    // Standard output goes to that file, which is there, and is none of the run's texts.
    Tool& withOutputTo(const std::string& path);
    // 0, 1 or 2 is closed when the program starts.
    Tool& withoutStream(int descriptor);
    // The directory is gone when the program starts, and was empty.
    Tool& inDeletedDirectory();

    ToolRun run(const Arguments& arguments) const;

    static std::string executable();
    static bool isRoot();

private:
    bool prepare(int out, int err) const;

    std::string m_directory;
    std::string m_name = "tool";
    std::string m_executable = executable();
    std::map<std::string, std::string> m_environment;
    std::string m_input = "/dev/null";
    std::string m_output;
    int m_closedStream = -1;
    bool m_isOnOneCore = false;
    bool m_dropsRights = false;
    std::vector<std::string> m_preloaded; // libraries of the build
    bool m_deletesDirectory = false;
};

// A user and group that own nothing.
constexpr unsigned NobodyId = 65534;

// Runs the tool in a directory, and all is as it is by default.
ToolRun runTool(const std::string& directory, const Arguments& arguments);

} // namespace TestSupport
