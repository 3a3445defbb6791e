// How library code finds the services of the process.
#pragma once

#include <memory>

namespace Orv {

// Implemented once by the program. Library code never holds it: it asks libraryServices() and casts
// to the interface that it needs; null means that it runs without services.
class ILibraryServices
{
public:
    virtual ~ILibraryServices() = default;
};

// The process-wide pointer: null until setLibraryServices(), never cleared. Main thread.
ILibraryServices* libraryServices();
void setLibraryServices(ILibraryServices* services);

namespace Core {

class CommandManager;
class ICommandManager;

// The slots that answer null are places of the interface that no client has filled yet.
class ILibraryServices : public virtual Orv::ILibraryServices
{
public:
    virtual void* reserved0() = 0; // null
    // A second handle on the command manager, whose address can be given away.
    virtual const std::shared_ptr<CommandManager>* commandManagerHandle() = 0;
    virtual const std::shared_ptr<CommandManager>& commandManager() = 0;
    virtual const std::shared_ptr<void>& spareHandle() = 0; // empty for the life of the process
    virtual void* reserved4() = 0;                          // null
};

// The command manager of the process, null without services.
std::shared_ptr<ICommandManager> commandManager();

} // namespace Core
} // namespace Orv
