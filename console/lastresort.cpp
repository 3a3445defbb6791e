#include "lastresort.h"

#include <QThread>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>

namespace {

int exitCodeOfFailure = 1;

// The first line of the text. C++ streams may have to allocate; this one has no buffer.
void print(const char* text) noexcept
{
    std::fputs("Error! ", stderr);
    std::fwrite(text, 1, std::strcspn(text, "\n"), stderr);
    std::fputc('\n', stderr);
}

[[noreturn]] void endProcess() noexcept
{
    if (std::current_exception() != nullptr)
        endWithException();
    std::_Exit(exitCodeOfFailure);
}

void endWithoutMemory(int)
{
    print("Out of memory");
    std::_Exit(exitCodeOfFailure);
}

} // namespace

void installLastResort(int exitCode) noexcept
{
    exitCodeOfFailure = exitCode;
    std::set_terminate(&endProcess);
}

void makeThreadObject()
{
    const auto former = std::signal(SIGSEGV, &endWithoutMemory);
    QThread::currentThread();
    std::signal(SIGSEGV, former);
}

void endWithException() noexcept
{
    try {
        throw;
    } catch (const std::bad_alloc&) {
        print("Out of memory");
    } catch (const std::exception& exception) {
        print(exception.what());
    } catch (...) {
        print("Unknown failure");
    }
    std::_Exit(exitCodeOfFailure);
}
