#include "ksx/core/packagelistener.h"

#include "data/content/package.h"
#include "ksx/core/listenerof.h"
#include "ksx/core/packagecontroller.h"
#include <memory>

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
        // Not made by create(): where memory is missing, that one frees a counter that it never set.
        auto made = std::make_unique<PackageController>(*m_package);
        live.reset(made.get());
        static_cast<void>(made.release());
        m_controller = live;
    }
    return live;
}

} // namespace Ksx::Core
