// Runs the tool many times without starting it anew: each run is a child of this process, which has
// been loaded already. Under the sanitizers, starting takes fifty times as long as a small run.
//
// A request on standard input is a list of texts, each with a zero byte behind it: the number of the
// texts that follow, working directory, file for standard output, file for standard error, limit of
// cpu seconds, limit of address space in bytes (0 for none), then the arguments from the first on.
// The answer is a line: exit code (-1 behind a signal), signal (0 for none), microseconds of cpu,
// kilobytes of resident memory at the peak.
#include "childend.h"
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <iostream>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

// The main() of the tool, compiled under this name.
int kestrixMain(int argc, char** argv);

namespace {

constexpr int CannotStart = 127;

struct Request
{
    std::string directory;
    std::string output;
    std::string errors;
    rlim_t cpuSeconds = 0;
    rlim_t addressSpace = 0;
    std::vector<std::string> arguments;
};

// Returns false at the end of the input.
bool readTexts(std::vector<std::string>& texts)
{
    std::string count;
    if (!std::getline(std::cin, count, '\0'))
        return false;
    texts.assign(std::stoul(count), {});
    for (std::string& text : texts)
        std::getline(std::cin, text, '\0');
    return !std::cin.fail();
}

Request requestOf(const std::vector<std::string>& texts)
{
    Request request;
    request.directory = texts.at(0);
    request.output = texts.at(1);
    request.errors = texts.at(2);
    request.cpuSeconds = std::stoul(texts.at(3));
    request.addressSpace = std::stoul(texts.at(4));
    request.arguments.assign(texts.begin() + 5, texts.end());
    return request;
}

bool redirect(const std::string& path, int descriptor, int flags)
{
    const int file = open(path.c_str(), flags | O_CLOEXEC, 0644);
    return file >= 0 && dup2(file, descriptor) >= 0;
}

void limit(decltype(RLIMIT_CPU) resource, rlim_t amount)
{
    const rlimit bounds{amount, amount};
    if (amount != 0 && setrlimit(resource, &bounds) != 0)
        _exit(CannotStart);
}

// Runs in the child. The program ends by exit(), as it does behind its own main().
[[noreturn]] void runTool(const Request& request)
{
    constexpr int Written = O_WRONLY | O_CREAT | O_TRUNC;
    if (!redirect("/dev/null", STDIN_FILENO, O_RDONLY) ||
        !redirect(request.output, STDOUT_FILENO, Written) ||
        !redirect(request.errors, STDERR_FILENO, Written) || chdir(request.directory.c_str()) != 0)
        _exit(CannotStart);
    limit(RLIMIT_CPU, request.cpuSeconds);
    limit(RLIMIT_AS, request.addressSpace);
    limit(RLIMIT_CORE, 0);
    std::vector<std::string> words{"kestrix"};
    words.insert(words.end(), request.arguments.begin(), request.arguments.end());
    std::vector<char*> argv;
    argv.reserve(words.size() + 1);
    for (std::string& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    std::exit(kestrixMain(static_cast<int>(words.size()), argv.data()));
}

} // namespace

int main()
{
    for (std::vector<std::string> texts; readTexts(texts);) {
        const Request request = requestOf(texts);
        const pid_t child = fork();
        if (child == 0)
            runTool(request);
        Trust::print(Trust::waitFor(child));
        std::printf("\n");
        std::fflush(stdout);
    }
}
