#include "reading/extensionregistry.h"

#include "reading/assemblyversionreaders.h"
#include "reading/oblarimporter.h"
#include "reading/oblasmimporter.h"
#include "reading/oblimporter.h"
#include "reading/oblversionreaders.h"
#include "updating/oblformatupdater3962n1.h"
#include "updating/oblformatupdater3962n2.h"
#include "updating/oblformatupdater4510.h"
#include "updating/oblformatupdater4858.h"
#include "updating/oblformatupdater5017.h"
#include "updating/oblformatupdater5356.h"
#include "updating/oblformatupdater7049.h"
#include "updating/packageupdater3962.h"
#include "updating/packageupdater4253.h"
#include "updating/packageupdater6141.h"
#include <algorithm>
#include <atomic>

namespace Ksx::Core {

namespace {

using Orv::Core::Version;
using namespace Orv::Core::Extensions;

template <class Updater>
std::unique_ptr<IUpdater> make()
{
    return std::make_unique<Updater>();
}

struct UpdaterRow
{
    unsigned build;
    std::unique_ptr<IUpdater> (*make)();
};

// The history of the format, in ascending order of the builds that introduced the steps.
constexpr UpdaterRow UpdaterTable[] = {
    {3962, &make<OBLFormatUpdater3962n1>}, //
    {3962, &make<OBLFormatUpdater3962n2>}, //
    {3962, &make<PackageUpdater3962>},     //
    {4253, &make<PackageUpdater4253>},     //
    {4510, &make<OBLFormatUpdater4510>},   //
    {4858, &make<OBLFormatUpdater4858>},   //
    {5017, &make<OBLFormatUpdater5017>},   //
    {5356, &make<OBLFormatUpdater5356>},   //
    {6141, &make<PackageUpdater6141>},     //
    {7049, &make<OBLFormatUpdater7049>},   //
};

std::atomic<const ExtensionRegistry*> otherRegistry{nullptr};

} // namespace

Version applicationVersion()
{
    return {2, 0, 1, 9782};
}

const ExtensionRegistry& ExtensionRegistry::instance()
{
    static const ExtensionRegistry builtIn; // the language guards the first use
    const ExtensionRegistry* const other = otherRegistry.load();
    return other == nullptr ? builtIn : *other;
}

void ExtensionRegistry::setInstance(const ExtensionRegistry* registry)
{
    otherRegistry = registry;
}

template <class Interface, class Extension>
void ExtensionRegistry::addTo(std::vector<const Interface*>& list,
                              std::unique_ptr<Extension> extension)
{
    list.push_back(extension.get());
    m_owned.emplace_back(std::move(extension));
}

void ExtensionRegistry::add(std::unique_ptr<IDataImporter> importer)
{
    addTo(m_importers, std::move(importer));
}

void ExtensionRegistry::add(std::unique_ptr<IDataFormatVersionReader> reader)
{
    addTo(m_formatVersionReaders, std::move(reader));
}

void ExtensionRegistry::add(std::unique_ptr<IUpdater> updater)
{
    if (const auto* format = dynamic_cast<const IDataFormatUpdater*>(updater.get()))
        m_formatUpdaters.push_back(format);
    if (const auto* package = dynamic_cast<const IPackageUpdater*>(updater.get()))
        m_packageUpdaters.push_back(package);
    addTo(m_updaters, std::move(updater));
}

ExtensionRegistry::ExtensionRegistry()
{
    add(std::make_unique<OBLImporter>());
    add(std::make_unique<OBLARImporter>());
    add(std::make_unique<OBLASMImporter>());
    add(std::make_unique<OBLDataFormatVersionReader>());
    add(std::make_unique<OBLARDataFormatVersionReader>());
    add(std::make_unique<OBLASMDataFormatVersionReader>());
    addTo(m_updaterVersionReaders, std::make_unique<OBLUpdaterVersionReader>());
    for (const UpdaterRow& row : UpdaterTable)
        add(row.make());
}

const IDataImporter* ExtensionRegistry::importerFor(const QUrl& url) const
{
    const IDataImporter* newest = nullptr;
    for (const IDataImporter* importer : m_importers) {
        const bool isUsable = importer->isCompatible(applicationVersion()) &&
                              importer->version() <= applicationVersion() && importer->accepts(url);
        if (isUsable && (newest == nullptr || newest->version() < importer->version()))
            newest = importer;
    }
    return newest;
}

const IUpdater& ExtensionRegistry::newestUpdater() const
{
    return **std::max_element(m_updaters.begin(), m_updaters.end(),
                              [](const IUpdater* a, const IUpdater* b) {
                                  return a->updaterVersion() < b->updaterVersion();
                              });
}

} // namespace Ksx::Core
