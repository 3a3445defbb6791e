#include "ksx/core/libraryservices.h"

#include "core/commandmanager.h"
#include "core/commandsignals.h"
#include "core/manipulatorcontext.h"
#include "data/content/packageslist.h"
#include "ksx/core/behavior/behaviors.h"
#include "ksx/core/datanotifier.h"
#include "ksx/core/dependenciesdictionary.h"
#include "ksx/core/packageslistmanager.h"
#include "ksx/core/plainroute.h"

namespace Ksx::Core {

namespace {
constexpr std::uint32_t CommandManagerMode = 2;
} // namespace

ServiceParts::ServiceParts(Orv::Core::ILibraryServices& services, Packages packages)
    : m_packages(packages)
{
    Orv::setLibraryServices(&services);
    commandManager = std::make_shared<Orv::Core::CommandManager>(CommandManagerMode);
    commandManagerHandle =
        std::make_unique<std::shared_ptr<Orv::Core::CommandManager>>(commandManager);
    behaviors = std::make_unique<DataNotifier>();
    m_dependenciesDictionary = std::make_unique<DependenciesDictionary>();
    m_dictionaryUpdater =
        std::make_unique<DependenciesDictionaryUpdater>(*m_dependenciesDictionary);
    packagesListManager = new PackagesListManager;
    const auto& document = packagesListManager->document();
    editPlainly([&](Orv::Core::ManipulatorContext& context) {
        context.addListener(document.content(), *m_dictionaryUpdater);
        return true;
    });
    Behavior::addBehaviors(*behaviors, *m_dependenciesDictionary);
    behaviors->attachTo(document);
    behaviors->deferOpened();
    commandManager->aboutToExecute().connect(
        [notifier = Orv::Data::DataPointerBox<DataNotifier>(behaviors.get())](
            const std::shared_ptr<Orv::Core::ICommand>&) {
            if (notifier)
                notifier.access()->visitOpened();
        });
}

ServiceParts::~ServiceParts()
{
    if (m_packages == Packages::EndWithServices)
        delete packagesListManager;
    behaviors.reset();
    commandManagerHandle.reset();
    m_dependenciesDictionary.reset();
    m_dictionaryUpdater.reset();
    commandManager.reset();
    if (m_packages == Packages::EndWithServices)
        Orv::setLibraryServices(nullptr);
}

} // namespace Ksx::Core
