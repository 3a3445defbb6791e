#include "reading/extensionregistry.h"

#include "reading/assemblyversionreaders.h"
#include "reading/oblarimporter.h"
#include "reading/oblasmimporter.h"
#include "reading/oblimporter.h"
#include "reading/oblversionreaders.h"
#include "support/shelfcases.h"
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
#include <gtest/gtest.h>
#include <algorithm>
#include <thread>
#include <typeindex>

using Ksx::Core::applicationVersion;
using Ksx::Core::ExtensionRegistry;
using Orv::Core::Version;
using TestSupport::caseName;

namespace {

using namespace Ksx::Core;
using Types = std::vector<std::type_index>;

template <class Extension>
Types typesOf(const std::vector<const Extension*>& extensions)
{
    Types types;
    for (const Extension* extension : extensions)
        types.emplace_back(typeid(*extension));
    return types;
}

template <class... Extensions>
Types listOf()
{
    return {std::type_index(typeid(Extensions))...};
}

const ExtensionRegistry& registry()
{
    return ExtensionRegistry::instance();
}

TEST(ExtensionRegistry, IsOne)
{
    const ExtensionRegistry* other = nullptr;
    std::thread([&] { other = &ExtensionRegistry::instance(); }).join();

    EXPECT_EQ(other, &ExtensionRegistry::instance());
}

TEST(ExtensionRegistry, TheApplicationHasItsVersion)
{
    EXPECT_EQ(applicationVersion(), (Version{2, 0, 1, 9782}));
}

TEST(ExtensionRegistry, HoldsTheUpdatersInAscendingOrder)
{
    EXPECT_EQ(typesOf(registry().updaters()),
              (listOf<OBLFormatUpdater3962n1, OBLFormatUpdater3962n2, PackageUpdater3962,
                      PackageUpdater4253, OBLFormatUpdater4510, OBLFormatUpdater4858,
                      OBLFormatUpdater5017, OBLFormatUpdater5356, PackageUpdater6141,
                      OBLFormatUpdater7049>()));
}

TEST(ExtensionRegistry, HoldsTheFormatUpdatersApart)
{
    EXPECT_EQ(typesOf(registry().formatUpdaters()),
              (listOf<OBLFormatUpdater3962n1, OBLFormatUpdater3962n2, OBLFormatUpdater4510,
                      OBLFormatUpdater4858, OBLFormatUpdater5017, OBLFormatUpdater5356,
                      OBLFormatUpdater7049>()));
}

TEST(ExtensionRegistry, HoldsThePackageUpdatersApart)
{
    EXPECT_EQ(typesOf(registry().packageUpdaters()),
              (listOf<PackageUpdater3962, PackageUpdater4253, PackageUpdater6141>()));
}

TEST(ExtensionRegistry, HoldsTheImportersAndVersionReadersOfThreeFormats)
{
    EXPECT_EQ(typesOf(registry().importers()),
              (listOf<OBLImporter, OBLARImporter, OBLASMImporter>()));
    EXPECT_EQ(typesOf(registry().formatVersionReaders()),
              (listOf<OBLDataFormatVersionReader, OBLARDataFormatVersionReader,
                      OBLASMDataFormatVersionReader>()));
    EXPECT_EQ(typesOf(registry().updaterVersionReaders()), listOf<OBLUpdaterVersionReader>());
}

TEST(ExtensionRegistry, HasAFormatVersionReaderForEachImporter)
{
    const auto isServed = [](const auto* importer) {
        const auto& readers = registry().formatVersionReaders();
        return std::count_if(readers.begin(), readers.end(),
                             [&](const auto* reader) { return reader->accepts(*importer); }) == 1;
    };

    EXPECT_TRUE(
        std::all_of(registry().importers().begin(), registry().importers().end(), isServed));
}

TEST(ExtensionRegistry, AllImportersAreOfTheApplicationsVersionAndFitAny)
{
    const auto fits = [](const auto* importer) {
        return importer->version() == applicationVersion() &&
               importer->isCompatible(applicationVersion()) &&
               importer->isCompatible({0, 0, 0, 0}) && importer->isCompatible({99, 0, 0, 0});
    };

    EXPECT_TRUE(std::all_of(registry().importers().begin(), registry().importers().end(), fits));
}

// Takes the files of the library as well.
class OtherImporter final : public Orv::Core::Extensions::IDataImporter
{
public:
    OtherImporter(bool fits, const Version& version) : m_fits(fits), m_version(version) {}
    bool isCompatible(const Version&) const override { return m_fits; }
    bool accepts(const QUrl&) const override { return true; }
    std::unique_ptr<QIODevice> createDevice(const QUrl&) const override { return nullptr; }
    Version version() const override { return m_version; }
    std::unique_ptr<Orv::Data::BaseObject>
    import(QIODevice&, Orv::Core::MessageNode*,
           const Orv::Core::Extensions::ProgressFunction&) const override
    {
        return nullptr;
    }

private:
    bool m_fits;
    Version m_version;
};

class OtherRegistry final : public ExtensionRegistry
{
public:
    void addImporter(bool fits, const Version& version)
    {
        add(std::make_unique<OtherImporter>(fits, version));
    }
    // Returns the version of the importer that is chosen for such a file.
    Version chosenFor(const char* url) const { return importerFor(QUrl(url))->version(); }
};

TEST(ExtensionRegistry, ChoosesTheNewestImporterThatFitsTheApplication)
{
    OtherRegistry registry;
    registry.addImporter(true, {1, 0, 0, 0});
    registry.addImporter(true, {2, 0, 0, 0});
    registry.addImporter(true, {1, 5, 0, 0});
    registry.addImporter(false, {2, 0, 1, 0});
    registry.addImporter(true, {2, 0, 1, 9783});

    EXPECT_EQ(registry.chosenFor("file:///a.other"), (Version{2, 0, 0, 0}));
    EXPECT_EQ(registry.chosenFor("file:///a.obl"), applicationVersion());
}

TEST(ExtensionRegistry, AllFormatUpdatersServeTheOblImporterAlone)
{
    const auto isForObl = [](const auto* updater) {
        const auto& importers = registry().importers();
        return std::all_of(importers.begin(), importers.end(), [&](const auto* importer) {
            return updater->accepts(*importer) == (typeid(*importer) == typeid(OBLImporter));
        });
    };

    EXPECT_TRUE(std::all_of(registry().formatUpdaters().begin(), registry().formatUpdaters().end(),
                            isForObl));
}

TEST(ExtensionRegistry, TheNewestUpdaterTellsTheFormat)
{
    EXPECT_EQ(registry().newestUpdater().updaterVersion(), (Version{1, 1, 0, 7049}));
    EXPECT_EQ(registry().newestUpdater().formatVersion(), (Version{1, 1, 0, 7049}));
}

// Versions.

struct UpdaterCase
{
    const char* name;
    std::size_t index;
    Version updaterVersion;
    Version formatVersion;
};

std::ostream& operator<<(std::ostream& stream, const UpdaterCase& c)
{
    return stream << c.name;
}

class RegisteredUpdater : public testing::TestWithParam<UpdaterCase>
{};

TEST_P(RegisteredUpdater, HasItsVersions)
{
    const auto* updater = registry().updaters().at(GetParam().index);

    EXPECT_EQ(updater->updaterVersion(), GetParam().updaterVersion);
    EXPECT_EQ(updater->formatVersion(), GetParam().formatVersion);
}

TEST_P(RegisteredUpdater, ShowsItsKeysWithoutATranslation)
{
    const auto* updater = registry().updaters().at(GetParam().index);

    EXPECT_EQ(updater->name(), "NAME");
    EXPECT_EQ(updater->description(), "DESCRIPTION");
}

INSTANTIATE_TEST_SUITE_P(
    All, RegisteredUpdater,
    testing::Values(UpdaterCase{"Format3962n1", 0, {1, 0, 1, 3962}, {1, 0, 1, 3962}},
                    UpdaterCase{"Format3962n2", 1, {1, 0, 1, 3962}, {1, 0, 1, 3962}},
                    UpdaterCase{"Package3962", 2, {1, 0, 1, 3962}, {1, 0, 1, 3962}},
                    UpdaterCase{"Package4253", 3, {1, 0, 1, 4253}, {1, 0, 1, 3962}},
                    UpdaterCase{"Format4510", 4, {1, 0, 1, 4510}, {1, 0, 1, 4510}},
                    UpdaterCase{"Format4858", 5, {1, 0, 3, 4858}, {1, 0, 3, 4858}},
                    UpdaterCase{"Format5017", 6, {1, 0, 3, 5017}, {1, 0, 3, 5017}},
                    UpdaterCase{"Format5356", 7, {1, 1, 0, 5356}, {1, 1, 0, 5356}},
                    UpdaterCase{"Package6141", 8, {1, 1, 0, 6141}, {1, 1, 0, 6141}},
                    UpdaterCase{"Format7049", 9, {1, 1, 0, 7049}, {1, 1, 0, 7049}}),
    caseName<UpdaterCase>);

// The choice of an importer.

struct UrlCase
{
    const char* name;
    const char* url;
    int format; // its place in the list of importers; -1: none
};

std::ostream& operator<<(std::ostream& stream, const UrlCase& c)
{
    return stream << c.name;
}

class ImporterForUrl : public testing::TestWithParam<UrlCase>
{};

TEST_P(ImporterForUrl, GoesByTheEndOfTheText)
{
    const auto* importer = registry().importerFor(QUrl(GetParam().url));

    const auto& all = registry().importers();
    const auto place = std::find(all.begin(), all.end(), importer);
    EXPECT_EQ(place == all.end() ? -1 : place - all.begin(), GetParam().format);
}

INSTANTIATE_TEST_SUITE_P(
    Urls, ImporterForUrl,
    testing::Values(UrlCase{"Package", "file:///x/a.obl", 0},
                    UrlCase{"Autosave", "file:///x/a.obl.orvautosave", 0},
                    UrlCase{"OtherScheme", "http://x/a.obl", 0}, UrlCase{"NoScheme", "a.obl", 0},
                    UrlCase{"EndingAlone", "file:///x/.obl", 0},
                    UrlCase{"QueryAtTheEnd", "file:///x/a.png?b.obl", 0},
                    UrlCase{"QueryBehind", "file:///x/a.obl?b", -1},
                    UrlCase{"Capitals", "file:///x/a.OBL", -1},
                    UrlCase{"AutosaveInCapitals", "file:///x/a.obl.ORVAUTOSAVE", -1},
                    UrlCase{"AutosaveAlone", "file:///x/a.orvautosave", -1},
                    UrlCase{"Archive", "file:///x/a.oblar", 1},
                    UrlCase{"Assembly", "file:///x/a.oblasm", 2},
                    UrlCase{"LongerEnding", "file:///x/a.oblx", -1},
                    UrlCase{"NoPoint", "file:///x/aobl", -1}, UrlCase{"Nothing", "", -1}),
    caseName<UrlCase>);

TEST(ImporterForUrl, ThereIsNoneForAnUnknownEnding)
{
    EXPECT_EQ(registry().importerFor(QUrl("file:///x/a.xml")), nullptr);
    EXPECT_EQ(registry().importerFor(QUrl()), nullptr);
}

} // namespace
