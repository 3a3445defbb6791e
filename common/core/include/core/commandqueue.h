// The commands that wait for the event loop.
#pragma once

#include <boost/signals2/signal.hpp>
#include <cstddef>
#include <list>
#include <memory>
#include <mutex>

namespace Orv::Core {

class ICommand;

// First in, first out; may be filled from any thread.
class CommandQueue
{
public:
    // Emitted, without the lock, when the queue went from empty to one entry.
    boost::signals2::signal<void()> queueNotEmpty;

    void append(const std::shared_ptr<ICommand>& command);
    // Null when the queue is empty.
    std::shared_ptr<ICommand> takeFirst();
    // Answers how many entries it removed.
    std::size_t remove(const std::shared_ptr<ICommand>& command);
    std::size_t size() const;

private:
    mutable std::mutex m_mutex;
    std::list<std::shared_ptr<ICommand>> m_commands;
};

} // namespace Orv::Core
