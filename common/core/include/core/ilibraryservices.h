// The services of a process, as library code finds them.
#pragma once

#include <memory>

namespace Orv {

// Implemented once by the program. Library code never holds it. It asks libraryServices() and casts
// to the interface that it needs. Null means that it runs without services.
class ILibraryServices
{
public:
    virtual ~ILibraryServices() = default;
};

// Returns the services of the process. Returns null until setLibraryServices() was called. Main
// thread.
ILibraryServices* libraryServices();

// Sets the services of the process. The program owns them, and must keep them to the end. Main
// thread.
void setLibraryServices(ILibraryServices* services);

namespace Core {

class CommandManager;
class ICommandManager;

// The part of the services that edits need. A place that returns null has no use yet.
class ILibraryServices : public virtual Orv::ILibraryServices
{
public:
    // Returns null.
    virtual void* reserved0() = 0;
    // Returns a second handle on the command manager, whose address can be given away.
    virtual const std::shared_ptr<CommandManager>* commandManagerHandle() = 0;
    // Returns the command manager, by which all edits run.
    virtual const std::shared_ptr<CommandManager>& commandManager() = 0;
    // Returns an empty handle, for the life of the process.
    virtual const std::shared_ptr<void>& spareHandle() = 0;
    // Returns null.
    virtual void* reserved4() = 0;
};

// Returns the command manager of the process. Returns null without services.
std::shared_ptr<ICommandManager> commandManager();

} // namespace Core
} // namespace Orv
