#include "lastresort.h"

#include <QThread>
#include <csignal>
#include <cstring>
#include <exception>
#include <new>
#include <unistd.h>

namespace {

// The first line of the text. The stream is not used: it may have to allocate.
void print(const char* text) noexcept
{
    const auto write = [](const char* part, std::size_t size) {
        return ::write(STDERR_FILENO, part, size) == static_cast<ssize_t>(size);
    };
    static_cast<void>(write("Error! ", 7) && write(text, std::strcspn(text, "\n")) &&
                      write("\n", 1));
}

[[noreturn]] void endProcess() noexcept
{
    if (std::current_exception() != nullptr)
        endWithException();
    _exit(1);
}

void endWithoutMemory(int)
{
    print("Out of memory");
    _exit(1);
}

} // namespace

void installLastResort() noexcept
{
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
    _exit(1);
}
