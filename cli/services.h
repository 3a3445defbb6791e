// The composition root: owns what the library finds through its services.
#pragma once

#include "core/ilibraryservices.h"
#include "ksx/core/ilibraryservices.h"
#include <QObject>
#include <memory>

namespace Ksx::Core {
class DependenciesDictionary;
class DependenciesDictionaryUpdater;
} // namespace Ksx::Core

// Made once, first of all in main(), and reachable as Orv::libraryServices() from its constructor
// on. Commands are given it at construction.
class Services : public QObject,
                 public Orv::Core::ILibraryServices,
                 public Ksx::Core::ILibraryServices
{
    Q_OBJECT

public:
    Services();
    ~Services() override;

    void* reserved0() override { return nullptr; }
    const std::shared_ptr<Orv::Core::CommandManager>* commandManagerHandle() override;
    const std::shared_ptr<Orv::Core::CommandManager>& commandManager() override;
    const std::shared_ptr<void>& spareHandle() override;
    void* reserved4() override { return nullptr; }

    Ksx::Core::DataNotifier* behaviors() override;
    Ksx::Core::PackagesListManager* packagesListManager() override;
    void* reserved2() override { return nullptr; }
    Extensions& extensions() override;

private:
    std::shared_ptr<void> m_spareHandle;
    std::shared_ptr<Orv::Core::CommandManager> m_commandManager;
    std::unique_ptr<std::shared_ptr<Orv::Core::CommandManager>> m_commandManagerHandle;
    std::unique_ptr<Ksx::Core::DataNotifier> m_behaviors;
    std::unique_ptr<Ksx::Core::DependenciesDictionary> m_dependenciesDictionary;
    std::unique_ptr<Ksx::Core::DependenciesDictionaryUpdater> m_dictionaryUpdater;
    // Stays for the life of the process: taking large documents apart at its end would be the
    // dearest part of many runs.
    Ksx::Core::PackagesListManager* m_packagesListManager;
    Extensions m_extensions;
};
