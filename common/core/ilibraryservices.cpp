#include "core/ilibraryservices.h"

#include "core/commandmanager.h"

namespace Orv {

namespace {
ILibraryServices* services = nullptr;
} // namespace

ILibraryServices* libraryServices()
{
    return services;
}

void setLibraryServices(ILibraryServices* newServices)
{
    services = newServices;
}

std::shared_ptr<Core::ICommandManager> Core::commandManager()
{
    auto* core = dynamic_cast<Core::ILibraryServices*>(services);
    return core != nullptr ? core->commandManager() : nullptr;
}

} // namespace Orv
