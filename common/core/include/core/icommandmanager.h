// The interface that runs commands and sends signals about them.
#pragma once

#include <memory>

namespace Orv::Core {

class ActivitySignal;
class CommandSignal;
class ICommand;

// Runs the commands of a process. CommandManager is its one implementation. See there for threads.
class ICommandManager
{
public:
    virtual ~ICommandManager() = default;

    // Queues a command for the event loop. Returns true. A null command is ignored.
    virtual bool push(const std::shared_ptr<ICommand>& command) = 0;

    // Runs a command at once. Returns false for a null command and for one that failed. Passes on
    // exceptions.
    virtual bool execute(const std::shared_ptr<ICommand>& command) = 0;
    // Runs queued commands, a slice at most.
    virtual void update() = 0;
    // Takes every entry of the command off the queue. Returns true if there was exactly one.
    virtual bool remove(const std::shared_ptr<ICommand>& command) = 0;

    // Sent before each command. Include "core/commandsignals.h" to connect.
    virtual CommandSignal& aboutToExecute() = 0;
    // Sent after each command that succeeded.
    virtual CommandSignal& executed() = 0;
    // Sent after each command that returned false.
    virtual CommandSignal& failed() = 0;
    // Sent when remove() returns true.
    virtual CommandSignal& removed() = 0;
    // Sent when the manager begins or ends to run commands.
    virtual ActivitySignal& activityChanged() = 0;

    // Makes the next update() run the queue empty.
    virtual void requestFullUpdate() = 0;
};

} // namespace Orv::Core
