// The package library's services of the process.
#pragma once

#include "core/ilibraryservices.h"
#include <QMap>
#include <QString>
#include <QVariant>

namespace Ksx::Core {

class DataNotifier;
class PackagesListManager;

// The slot that answers null is a place of the interface that no client has filled yet.
class ILibraryServices : public virtual Orv::ILibraryServices
{
public:
    using Extensions = QMap<QString, QVariant>;

    virtual DataNotifier* behaviors() = 0;
    virtual PackagesListManager* packagesListManager() = 0;
    virtual void* reserved2() = 0;        // null
    virtual Extensions& extensions() = 0; // free for clients; empty at first
};

} // namespace Ksx::Core
