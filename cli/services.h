// The composition root: owns what the library finds through its services.
#pragma once

#include "core/ilibraryservices.h"
#include "ksx/core/libraryservices.h"
#include <QObject>

// Made once, first of all in main(), and reachable as Orv::libraryServices() from its constructor
// on. Commands are given it at construction. The packages stay for the life of the process: taking
// large documents apart at its end would be the dearest part of many runs.
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
    Ksx::Core::ServiceParts m_parts;
};
