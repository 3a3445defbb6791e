// The importers, version readers and updaters of the library.
#pragma once

#include "core/extensions.h"
#include "updating/ipackageupdater.h"
#include <memory>
#include <vector>

namespace Ksx::Core {

// The version of this build, of its importers and of its version readers.
Orv::Core::Version applicationVersion();

// Filled once, on first use from any thread, and constant from then on. Lists are in the order of
// registration; updaters in ascending order of their version.
class ExtensionRegistry
{
public:
    static const ExtensionRegistry& instance();
    // Lets instance() answer another registry, for tests; null gives the built-in one back. Not to
    // be called while a package is opened.
    static void setInstance(const ExtensionRegistry* registry);

    const std::vector<const Orv::Core::Extensions::IDataImporter*>& importers() const
    {
        return m_importers;
    }
    const std::vector<const Orv::Core::Extensions::IDataFormatVersionReader*>&
    formatVersionReaders() const
    {
        return m_formatVersionReaders;
    }
    const std::vector<const Orv::Core::Extensions::IUpdaterVersionReader*>&
    updaterVersionReaders() const
    {
        return m_updaterVersionReaders;
    }
    const std::vector<const Orv::Core::Extensions::IUpdater*>& updaters() const
    {
        return m_updaters;
    }
    const std::vector<const Orv::Core::Extensions::IDataFormatUpdater*>& formatUpdaters() const
    {
        return m_formatUpdaters;
    }
    const std::vector<const IPackageUpdater*>& packageUpdaters() const { return m_packageUpdaters; }

    // The importer for a URL: of those that accept it and are not newer than the application, the
    // newest, the first registered among equals. Null if there is none.
    const Orv::Core::Extensions::IDataImporter* importerFor(const QUrl& url) const;
    // Returns the updater with the greatest version, which gives the newest format. The library has
    // updaters of its own, so there is always one.
    const Orv::Core::Extensions::IUpdater& newestUpdater() const;

protected:
    // Holds the extensions of the library; a derived class adds its own behind them.
    ExtensionRegistry();
    void add(std::unique_ptr<Orv::Core::Extensions::IDataImporter> importer);
    void add(std::unique_ptr<Orv::Core::Extensions::IDataFormatVersionReader> reader);
    void add(std::unique_ptr<Orv::Core::Extensions::IUpdater> updater);

private:
    template <class Interface, class Extension>
    void addTo(std::vector<const Interface*>& list, std::unique_ptr<Extension> extension);

    std::vector<std::shared_ptr<const void>> m_owned;
    std::vector<const Orv::Core::Extensions::IDataImporter*> m_importers;
    std::vector<const Orv::Core::Extensions::IDataFormatVersionReader*> m_formatVersionReaders;
    std::vector<const Orv::Core::Extensions::IUpdaterVersionReader*> m_updaterVersionReaders;
    std::vector<const Orv::Core::Extensions::IUpdater*> m_updaters;
    std::vector<const Orv::Core::Extensions::IDataFormatUpdater*> m_formatUpdaters;
    std::vector<const IPackageUpdater*> m_packageUpdaters;
};

} // namespace Ksx::Core
