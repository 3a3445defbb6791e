#include "data/diagnosticlog.h"

#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace Orv {

namespace {

struct Entry
{
    DiagnosticLog::Sink sink;
    bool isBusy = false;
};

struct Sinks
{
    std::recursive_mutex mutex; // a sink may write, and add or remove sinks
    std::map<int, std::shared_ptr<Entry>> entries;
    int nextNumber = 1;
};

// Keeps a sink from hearing of its own writing, which would never end.
class Busy
{
public:
    explicit Busy(Entry& entry) : m_entry(entry) { m_entry.isBusy = true; }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;
    ~Busy() { m_entry.isBusy = false; }

private:
    Entry& m_entry;
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
    const std::lock_guard<std::recursive_mutex> lock(all.mutex);
    all.entries.emplace(all.nextNumber, std::make_shared<Entry>(Entry{std::move(sink)}));
    return all.nextNumber++;
}

void DiagnosticLog::removeSink(int number)
{
    Sinks& all = sinks();
    const std::lock_guard<std::recursive_mutex> lock(all.mutex);
    all.entries.erase(number);
}

void DiagnosticLog::write(LogLevel level, const char* source, int line, const std::string& text)
{
    Sinks& all = sinks();
    const std::lock_guard<std::recursive_mutex> lock(all.mutex);
    const auto entries = all.entries; // as they are now, whatever the sinks do to them
    for (const auto& [number, entry] : entries) {
        if (entry->isBusy || all.entries.count(number) == 0)
            continue;
        const Busy busy(*entry);
        entry->sink({level, text, source, line});
    }
}

} // namespace Orv
