#include "ksx/core/packagelistener.h"

#include "data/content/package.h"
#include "ksx/core/listenerof.h"
#include "ksx/core/packagecontroller.h"

namespace Ksx::Core {

PackageListener& PackageListener::of(const Data::Content::Package& package)
{
    return listenerOf<PackageListener>(package);
}

PackageListener::PackageListener(const Data::Content::Package& package) : m_package(&package) {}

PackageListener::~PackageListener() = default;

QSharedPointer<PackageController> PackageListener::controller()
{
    QSharedPointer<PackageController> live = m_controller.toStrongRef();
    if (live == nullptr && m_package) {
        live = QSharedPointer<PackageController>::create(*m_package);
        m_controller = live;
    }
    return live;
}

} // namespace Ksx::Core
