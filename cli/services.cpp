#include "services.h"

#include "core/commandmanager.h"
#include "core/commandsignals.h"
#include "core/manipulatorcontext.h"
#include "data/content/packageslist.h"
#include "ksx/core/behavior/behaviors.h"
#include "ksx/core/datanotifier.h"
#include "ksx/core/dependenciesdictionary.h"
#include "ksx/core/packageslistmanager.h"
#include "ksx/core/plainroute.h"

namespace {
constexpr std::uint32_t CommandManagerMode = 2;
} // namespace

Services::Services()
{
    Orv::setLibraryServices(static_cast<Orv::Core::ILibraryServices*>(this));
    m_commandManager = std::make_shared<Orv::Core::CommandManager>(CommandManagerMode);
    m_commandManagerHandle =
        std::make_unique<std::shared_ptr<Orv::Core::CommandManager>>(m_commandManager);
    m_behaviors = std::make_unique<Ksx::Core::DataNotifier>();
    m_dependenciesDictionary = std::make_unique<Ksx::Core::DependenciesDictionary>();
    m_dictionaryUpdater =
        std::make_unique<Ksx::Core::DependenciesDictionaryUpdater>(*m_dependenciesDictionary);
    m_packagesListManager = new Ksx::Core::PackagesListManager;
    const auto& document = m_packagesListManager->document();
    Ksx::Core::editPlainly([&](Orv::Core::ManipulatorContext& context) {
        context.addListener(document.content(), *m_dictionaryUpdater);
        return true;
    });
    Ksx::Core::Behavior::addBehaviors(*m_behaviors, *m_dependenciesDictionary);
    m_behaviors->attachTo(document);
    m_behaviors->deferOpened();
    m_commandManager->aboutToExecute().connect(
        [behaviors = Orv::Data::DataPointerBox<Ksx::Core::DataNotifier>(m_behaviors.get())](
            const std::shared_ptr<Orv::Core::ICommand>&) {
            if (behaviors)
                behaviors.access()->visitOpened();
        });
}

Services::~Services()
{
    m_behaviors.reset();
    m_commandManagerHandle.reset();
    m_dependenciesDictionary.reset();
    m_dictionaryUpdater.reset();
    m_commandManager.reset();
}

const std::shared_ptr<Orv::Core::CommandManager>* Services::commandManagerHandle()
{
    return m_commandManagerHandle.get();
}

const std::shared_ptr<Orv::Core::CommandManager>& Services::commandManager()
{
    return m_commandManager;
}

const std::shared_ptr<void>& Services::spareHandle()
{
    return m_spareHandle;
}

Ksx::Core::DataNotifier* Services::behaviors()
{
    return m_behaviors.get();
}

Ksx::Core::PackagesListManager* Services::packagesListManager()
{
    return m_packagesListManager;
}

Services::Extensions& Services::extensions()
{
    return m_extensions;
}
