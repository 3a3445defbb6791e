// The process-wide log of internal inconsistencies.
#pragma once

#include <functional>
#include <string>

namespace Orv {

enum class LogLevel
{
    Inconsistency = 2,
    Assertion = 3,
};

// One text with its origin: the source's name and line as the library gives them.
struct LogRecord
{
    LogLevel level;
    std::string text;
    const char* source;
    int line;
};

// Texts go to every sink, under one lock. Without a sink, as in the tool, they have no effect;
// work goes on in any case, since they are no errors of the run. A sink may write, and may add or
// remove sinks, itself included. It does not hear of its own writing.
class DiagnosticLog
{
public:
    using Sink = std::function<void(const LogRecord&)>;

    // Answers a number by which the sink can be removed.
    static int addSink(Sink sink);
    static void removeSink(int number);
    static void write(LogLevel level, const char* source, int line, const std::string& text);
};

} // namespace Orv
