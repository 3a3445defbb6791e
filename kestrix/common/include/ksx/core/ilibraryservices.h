// The services of the package library, which a program provides once for its process.
#pragma once

#include "core/ilibraryservices.h"
#include <QMap>
#include <QString>
#include <QVariant>

namespace Ksx::Core {

class DataNotifier;
class PackagesListManager;

// Gives the library its parts that there is one of in a process. A program derives one class from
// this interface and from Orv::Core::ILibraryServices, which has the command manager. It makes one
// object, hands it to Orv::setLibraryServices() and keeps it to the end. Main thread.
//
// The library works without services. Edits are then run directly, and objects of packages have no
// data paths. A program sets its parts up like this, `dictionary` being a DependenciesDictionary:
//
//     notifier.attachTo(packagesListManager.document());
//     Behavior::addBehaviors(notifier, dictionary);
//     notifier.deferOpened(); // then visitOpened() at each aboutToExecute() of the command manager
class ILibraryServices : public virtual Orv::ILibraryServices
{
public:
    using Extensions = QMap<QString, QVariant>;

    // Returns the registry of behaviours, for clients: the library does not ask for it. May be null
    // if the program edits nothing.
    virtual DataNotifier* behaviors() = 0;
    // Returns the manager of open packages. With null, data paths between packages lead nowhere.
    virtual PackagesListManager* packagesListManager() = 0;
    // Returns null. This place of the interface has no use yet.
    virtual void* reserved2() = 0;

    // Returns a map that is free for the program. It is empty at first, and the library reads
    // nothing of it.
    virtual Extensions& extensions() = 0;
};

} // namespace Ksx::Core
