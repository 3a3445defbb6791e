// The owner of the edit flow.
#pragma once

#include <memory>

namespace Orv::Core {

class ActivitySignal;
class CommandSignal;
class ICommand;

class ICommandManager
{
public:
    virtual ~ICommandManager() = default;
    // Queues a command, which must not be null, for the event loop. Answers true.
    virtual bool push(const std::shared_ptr<ICommand>& command) = 0;
    // Runs a command at once; false for a null command or one that failed. What it throws passes
    // through.
    virtual bool execute(const std::shared_ptr<ICommand>& command) = 0;
    // Runs queued commands, a slice at most.
    virtual void update() = 0;
    // Takes every entry of the command off the queue; true if there was exactly one.
    virtual bool remove(const std::shared_ptr<ICommand>& command) = 0;

    // Connect to these to hear of commands; core/commandsignals.h has their classes.
    virtual CommandSignal& aboutToExecute() = 0;
    virtual CommandSignal& executed() = 0;
    virtual CommandSignal& failed() = 0;
    virtual CommandSignal& removed() = 0;
    virtual ActivitySignal& activityChanged() = 0;

    // The next update() runs the queue empty.
    virtual void requestFullUpdate() = 0;
};

} // namespace Orv::Core
