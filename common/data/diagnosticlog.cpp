#include "data/diagnosticlog.h"

#include <map>
#include <mutex>
#include <utility>

namespace Orv {

namespace {

struct Sinks
{
    std::mutex mutex;
    std::map<int, DiagnosticLog::Sink> sinks;
    int nextNumber = 1;
};

Sinks& sinks()
{
    static Sinks instance;
    return instance;
}

} // namespace

int DiagnosticLog::addSink(Sink sink)
{
    Sinks& all = sinks();
    const std::lock_guard<std::mutex> lock(all.mutex);
    all.sinks.emplace(all.nextNumber, std::move(sink));
    return all.nextNumber++;
}

void DiagnosticLog::removeSink(int number)
{
    Sinks& all = sinks();
    const std::lock_guard<std::mutex> lock(all.mutex);
    all.sinks.erase(number);
}

void DiagnosticLog::write(LogLevel level, const char* source, int line, const std::string& text)
{
    Sinks& all = sinks();
    const std::lock_guard<std::mutex> lock(all.mutex);
    for (const auto& [number, sink] : all.sinks)
        sink({level, text, source, line});
}

} // namespace Orv
