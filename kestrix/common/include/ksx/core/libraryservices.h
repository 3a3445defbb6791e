// The services of a process that edits packages.
#pragma once

#include "core/ilibraryservices.h"
#include "ksx/core/ilibraryservices.h"
#include <memory>

namespace Ksx::Core {

class DependenciesDictionary;
class DependenciesDictionaryUpdater;

// The parts that ILibraryServices gives out: a command manager, a manager of open packages, and the
// behaviours that keep packages right while they are edited. For classes that implement the
// interfaces; others take LibraryServices or Session. Main thread.
class ServiceParts
{
public:
    // What becomes of the open packages at the end.
    enum class Packages
    {
        // They are destroyed with the parts, and the process is left without services.
        EndWithServices,
        // They stay for the life of the process: taking large documents apart takes time.
        EndWithProcess,
    };

    // Makes `services`, which own the parts, those of the process. The process has one such object
    // at a time.
    ServiceParts(Orv::Core::ILibraryServices& services, Packages packages);
    ServiceParts(const ServiceParts&) = delete;
    ServiceParts& operator=(const ServiceParts&) = delete;
    // All packages and controllers must be out of use if they end with the services.
    ~ServiceParts();

    // Empty.
    std::shared_ptr<void> spareHandle;
    std::shared_ptr<Orv::Core::CommandManager> commandManager;
    // A second handle on the same.
    std::unique_ptr<std::shared_ptr<Orv::Core::CommandManager>> commandManagerHandle;
    std::unique_ptr<DataNotifier> behaviors;
    // Owned unless the packages end with the process.
    PackagesListManager* packagesListManager = nullptr;
    ILibraryServices::Extensions extensions;

private:
    Packages m_packages;
    std::unique_ptr<DependenciesDictionary> m_dependenciesDictionary;
    std::unique_ptr<DependenciesDictionaryUpdater> m_dictionaryUpdater;
};

// The services of a program that has none of its own class. Session is more comfortable.
class LibraryServices final : public Orv::Core::ILibraryServices, public ILibraryServices
{
public:
    explicit LibraryServices(ServiceParts::Packages packages) : m_parts(*this, packages) {}

    void* reserved0() override { return nullptr; }
    const std::shared_ptr<Orv::Core::CommandManager>* commandManagerHandle() override
    {
        return m_parts.commandManagerHandle.get();
    }
    const std::shared_ptr<Orv::Core::CommandManager>& commandManager() override
    {
        return m_parts.commandManager;
    }
    const std::shared_ptr<void>& spareHandle() override { return m_parts.spareHandle; }
    void* reserved4() override { return nullptr; }

    DataNotifier* behaviors() override { return m_parts.behaviors.get(); }
    PackagesListManager* packagesListManager() override { return m_parts.packagesListManager; }
    void* reserved2() override { return nullptr; }
    Extensions& extensions() override { return m_parts.extensions; }

private:
    ServiceParts m_parts;
};

} // namespace Ksx::Core
