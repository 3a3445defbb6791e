#include "standardstreams.h"

#include <iostream>
#ifdef __unix__
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace {

#ifdef __unix__

bool isClosed(int descriptor)
{
    return fcntl(descriptor, F_GETFD) < 0 && errno == EBADF;
}

// Takes the lowest free number.
void openSubstitute()
{
    if (open("/dev/null", O_RDWR) < 0)
        static_cast<void>(open("/", O_RDONLY)); // nothing can be read or written there
}

#endif

} // namespace

#ifdef __unix__

StandardStreams::StandardStreams() : m_hasOutput(!isClosed(STDOUT_FILENO))
{
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (isClosed(descriptor))
            openSubstitute();
    // Whoever reads a pipe may go away, and a file may become too large: calls fail then, and the
    // process does not end in the middle of a save.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

#else

StandardStreams::StandardStreams() : m_hasOutput(true) {}

#endif

bool StandardStreams::isOutputComplete() const
{
    return m_hasOutput && std::cout.flush().good();
}
