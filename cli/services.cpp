#include "services.h"

#include "ksx/core/datanotifier.h"

Services::Services() : m_parts(*this, Ksx::Core::ServiceParts::Packages::EndWithProcess) {}

Services::~Services() = default;

const std::shared_ptr<Orv::Core::CommandManager>* Services::commandManagerHandle()
{
    return m_parts.commandManagerHandle.get();
}

const std::shared_ptr<Orv::Core::CommandManager>& Services::commandManager()
{
    return m_parts.commandManager;
}

const std::shared_ptr<void>& Services::spareHandle()
{
    return m_parts.spareHandle;
}

Ksx::Core::DataNotifier* Services::behaviors()
{
    return m_parts.behaviors.get();
}

Ksx::Core::PackagesListManager* Services::packagesListManager()
{
    return m_parts.packagesListManager;
}

Services::Extensions& Services::extensions()
{
    return m_parts.extensions;
}
