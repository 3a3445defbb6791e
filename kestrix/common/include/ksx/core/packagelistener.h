// Finds and makes the controller of a package.
#pragma once

#include "core/listenerdeaf.h"
#include "data/datapointerbox.h"
#include <QSharedPointer>
#include <QWeakPointer>

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class PackageController;

// Remembers the controller of one package. Hears of no changes itself. Main thread.
//
// The shadow of the package owns the listener. It dies with the package, or at the end of the
// change that takes the package out of the document.
//
//     const auto controller = PackageListener::of(package).controller(); // a QSharedPointer
//     CompGraphController* graph = controller->addGraph("wood");
class PackageListener final : public Orv::Core::ListenerDeaf<>
{
public:
    // Returns the listener of a package that is part of a document. Makes it at the first call.
    static PackageListener& of(const Data::Content::Package& package);

    // For of() alone.
    explicit PackageListener(const Data::Content::Package& package);
    ~PackageListener() override;
    // Returns true: the shadow deletes the listener.
    bool isOwnedByShadow() const override { return true; }

    // Returns the controller of the package. All callers share one as long as anybody keeps it.
    // After that the next call makes a new one. Returns null once the package has died.
    QSharedPointer<PackageController> controller();

private:
    Orv::Data::DataPointerBox<Data::Content::Package> m_package;
    QWeakPointer<PackageController> m_controller;
};

} // namespace Ksx::Core
