// Where the controller of a package is found.
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

// Stands on the shadow of the package and dies with it.
class PackageListener final : public Orv::Core::ListenerDeaf<>
{
public:
    // The listener of a package that stands in a document, made if there is none.
    static PackageListener& of(const Data::Content::Package& package);

    explicit PackageListener(const Data::Content::Package& package); // for of() alone
    ~PackageListener() override;
    bool isOwnedByShadow() const override { return true; }

    // The one controller of the package, as long as anybody keeps it; then a new one.
    QSharedPointer<PackageController> controller();

private:
    Orv::Data::DataPointerBox<Data::Content::Package> m_package;
    QWeakPointer<PackageController> m_controller;
};

} // namespace Ksx::Core
