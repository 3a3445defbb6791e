#include "ksx/core/packagereader.h"

#include "data/content/group.h"
#include "data/content/package.h"
#include "data/lightdocument.h"
#include "ksx/core/filereferences.h"
#include "reading/extensionregistry.h"
#include "support/packagetext.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/updaterhelper.h"
#include "updating/oblformatupdater3962n1.h"
#include "updating/oblformatupdater3962n2.h"
#include "updating/packageupdater3962.h"
#include <QBuffer>
#include <gtest/gtest.h>
#include <cstring>
#include <typeinfo>

using Ksx::Core::PackageReader;
using Ksx::Data::Content::Package;
using Orv::Core::MessageNode;
using Orv::Core::Version;
using TestSupport::aGroup;
using TestSupport::aPackage;
using TestSupport::aResource;
using TestSupport::caseName;
using TestSupport::PackageText;
using TestSupport::TemporaryDirectory;

namespace {

using Lines = std::vector<std::string>;

// Opens files of a directory with everything that a caller can ask for.
class PackageReading : public testing::Test
{
protected:
    std::unique_ptr<Package> open(const QUrl& url)
    {
        return PackageReader::open(
            url, &log, [this](float fraction) { progress.push_back(fraction); },
            [this](const PackageReader::Updaters& updaters, const QUrl& asked,
                   const Version& version) {
                askedUpdaters = updaters;
                askedUrl = asked;
                askedVersion = version;
                ++questions;
                return isConfirmed;
            },
            converters.empty() ? nullptr : &converters, &wasUpdated, noBackup);
    }
    std::unique_ptr<Package> open(const std::string& name = "a.obl") { return open(urlOf(name)); }
    QUrl urlOf(const std::string& name) const
    {
        return QUrl::fromLocalFile(QString::fromStdString(directory.path(name)));
    }
    std::string urlText(const std::string& name) const
    {
        return urlOf(name).toString().toStdString();
    }
    // A file of those versions, an empty one left out, whose other contents need no update.
    void write(const std::string& formatVersion, const std::string& updaterVersion) const
    {
        PackageText package = aPackage();
        package.with("formatVersion", formatVersion).without("updaterVersion");
        if (!updaterVersion.empty())
            package.with("updaterVersion", updaterVersion);
        directory.write("a.obl", package.text());
    }
    Lines stepsAsked() const
    {
        Lines steps;
        for (const auto* updater : askedUpdaters)
            steps.push_back(updater->updaterVersion().toString().toStdString());
        return steps;
    }
    std::string logText() const { return log.toText().toStdString(); }

    TemporaryDirectory directory;
    MessageNode log;
    std::vector<float> progress;
    PackageReader::Converters converters;
    bool isConfirmed = true;
    bool noBackup = true;
    bool wasUpdated = false;
    int questions = 0;
    PackageReader::Updaters askedUpdaters;
    QUrl askedUrl;
    Version askedVersion;
};

// Which steps a file needs.

struct SelectionCase
{
    const char* name;
    const char* formatVersion;
    const char* updaterVersion; // empty: the element is missing
    Lines steps;
};

std::ostream& operator<<(std::ostream& stream, const SelectionCase& c)
{
    return stream << c.name;
}

class StepsOfAFile : public PackageReading, public testing::WithParamInterface<SelectionCase>
{};

TEST_P(StepsOfAFile, AreThoseBehindItsVersion)
{
    write(GetParam().formatVersion, GetParam().updaterVersion);

    const auto package = open();

    EXPECT_NE(package, nullptr) << logText();
    EXPECT_EQ(stepsAsked(), GetParam().steps);
    EXPECT_EQ(wasUpdated, !GetParam().steps.empty());
    EXPECT_EQ(questions, GetParam().steps.empty() ? 0 : 1);
}

INSTANTIATE_TEST_SUITE_P(
    Versions, StepsOfAFile,
    testing::Values(
        SelectionCase{"Current", "1.1.0.7049", "", {}},
        SelectionCase{"CurrentTwice", "1.1.0.7049", "1.1.0.7049", {}},
        SelectionCase{"OneBefore", "1.1.0.7048", "", {"1.1.0.7049"}},
        SelectionCase{"ThreeSteps", "1.1.0.5355", "", {"1.1.0.5356", "1.1.0.6141", "1.1.0.7049"}},
        SelectionCase{"AtAStep", "1.1.0.5356", "", {"1.1.0.6141", "1.1.0.7049"}},
        SelectionCase{"AtTheFirstStep",
                      "1.0.1.3962",
                      "",
                      {"1.0.1.4253", "1.0.1.4510", "1.0.3.4858", "1.0.3.5017", "1.1.0.5356",
                       "1.1.0.6141", "1.1.0.7049"}},
        SelectionCase{"BeforeTheFirstStep",
                      "1.0.1.3961",
                      "",
                      {"1.0.1.3962", "1.0.1.3962", "1.0.1.3962", "1.0.1.4253", "1.0.1.4510",
                       "1.0.3.4858", "1.0.3.5017", "1.1.0.5356", "1.1.0.6141", "1.1.0.7049"}},
        SelectionCase{
            "BehindAPackageStep",
            "1.0.1.3962",
            "1.0.1.4253",
            {"1.0.1.4510", "1.0.3.4858", "1.0.3.5017", "1.1.0.5356", "1.1.0.6141", "1.1.0.7049"}},
        SelectionCase{"OldFormatButUpdated", "1.0.0.1", "1.1.0.7049", {}},
        SelectionCase{
            "UpdaterVersionDecides", "1.1.0.7049", "1.1.0.5356", {"1.1.0.6141", "1.1.0.7049"}},
        SelectionCase{
            "LaterFormatWithAnOldUpdaterVersion", "9.9.9.9", "1.1.0.6141", {"1.1.0.7049"}},
        SelectionCase{"LaterUpdaterVersion", "1.1.0.7049", "9.9.9.9", {}},
        SelectionCase{"NoVersion", "0.0.0.0", "", {}},
        SelectionCase{"NoVersionTwice", "0.0.0.0", "0.0.0.0", {}},
        SelectionCase{"NoUpdaterVersion", "1.0.1.3962", "0.0.0.0", {}},
        SelectionCase{"NoFormatVersionAlone", "0.0.0.0", "1.1.0.6141", {"1.1.0.7049"}},
        SelectionCase{"UnreadableUpdaterVersion", "1.1.0.6141", "folly", {"1.1.0.7049"}},
        SelectionCase{"BuildsOfALaterRevisionAreSmall", "1.1.1.1", "1.1.0.7048", {"1.1.0.7049"}}),
    caseName<SelectionCase>);

TEST_F(PackageReading, StepsOfOneVersionKeepTheirOrder)
{
    write("1.0.0.1", "");

    open();

    ASSERT_EQ(askedUpdaters.size(), 10u);
    const auto is = [this](std::size_t index, const std::type_info& type) {
        const auto& updater = *askedUpdaters[index];
        return typeid(updater) == type;
    };
    EXPECT_TRUE(is(0, typeid(Ksx::Core::OBLFormatUpdater3962n1)));
    EXPECT_TRUE(is(1, typeid(Ksx::Core::OBLFormatUpdater3962n2)));
    EXPECT_TRUE(is(2, typeid(Ksx::Core::PackageUpdater3962)));
}

TEST_F(PackageReading, StepsOfTheFormatRunBeforeThoseOfThePackage)
{
    write("1.0.3.5017", "");

    ASSERT_NE(open(), nullptr) << logText();

    Lines steps;
    for (const auto& message : log.children())
        if (message->text().endsWith(" : NAME"))
            steps.push_back(message->text().toStdString());
    EXPECT_EQ(steps, Lines({"1.1.0.5356 : NAME", "1.1.0.7049 : NAME", "1.1.0.6141 : NAME"}));
    EXPECT_FALSE(log.hasError());
}

TEST_F(PackageReading, AFileOfALaterFormatIsRefused)
{
    write("1.1.0.7050", "");

    EXPECT_EQ(open(), nullptr);

    EXPECT_EQ(logText(), "Error: ERROR_APPLICATION_TOO_OLD_TO_OPEN_URL_" + urlText("a.obl") +
                             "_VERSION_1.1.0.7049_1.1.0.7050_NEEDED\n");
}

TEST_F(PackageReading, AFileOfALaterFormatIsRefusedWhateverItsUpdaterVersion)
{
    write("1.2.0.0", "1.1.0.7049");

    EXPECT_EQ(open(), nullptr);

    EXPECT_EQ(logText(), "Error: ERROR_APPLICATION_TOO_OLD_TO_OPEN_URL_" + urlText("a.obl") +
                             "_VERSION_1.1.0.7049_1.2.0.0_NEEDED\n");
}

TEST_F(PackageReading, PlaceholdersInAUrlAreNotFilled)
{
    directory.write(
        "%1%2%3.obl",
        aPackage().with("formatVersion", "1.1.0.7050").without("updaterVersion").text());

    EXPECT_EQ(open("%1%2%3.obl"), nullptr);

    EXPECT_EQ(logText(), "Error: ERROR_APPLICATION_TOO_OLD_TO_OPEN_URL_" + urlText("%1%2%3.obl") +
                             "_VERSION_1.1.0.7049_1.1.0.7050_NEEDED\n");
}

// Versions that are written into the package.

TEST_F(PackageReading, AnUpdatedPackageGetsTheVersionsOfItsLastStep)
{
    write("1.0.1.3962", "");

    const auto package = open();

    ASSERT_NE(package, nullptr) << logText();
    EXPECT_EQ(package->formatVersion().get(), "1.1.0.7049");
    EXPECT_EQ(package->updaterVersion().get(), "1.1.0.7049");
}

TEST_F(PackageReading, ACurrentPackageKeepsWhatItHad)
{
    write("1.0.0.1", "1.1.0.7049");

    const auto package = open();

    ASSERT_NE(package, nullptr) << logText();
    EXPECT_EQ(package->formatVersion().get(), "1.0.0.1");
    EXPECT_EQ(package->updaterVersion().get(), "1.1.0.7049");
}

TEST_F(PackageReading, ACurrentPackageGetsNoUpdaterVersion)
{
    write("1.1.0.7049", "");

    const auto package = open();

    ASSERT_NE(package, nullptr) << logText();
    EXPECT_EQ(package->updaterVersion().get(), "");
}

TEST_F(PackageReading, TheFileIsNeverChanged)
{
    write("1.0.1.3962", "");
    const std::string before = directory.read("a.obl");

    open();

    EXPECT_EQ(directory.read("a.obl"), before);
}

// The question.

TEST_F(PackageReading, TheCallerIsAskedWithTheUrlAndTheVersion)
{
    write("1.0.0.1", "1.1.0.6141");

    EXPECT_NE(open(), nullptr) << logText();

    EXPECT_EQ(askedUrl, urlOf("a.obl"));
    EXPECT_EQ(askedVersion, (Version{1, 1, 0, 6141}));
}

TEST_F(PackageReading, ANoEndsTheOpening)
{
    write("1.1.0.6141", "");
    isConfirmed = false;
    noBackup = false;

    EXPECT_EQ(open(), nullptr);

    EXPECT_EQ(logText(), "Error: ERROR_UPDATE_PROCESS_STOPED_BY_USER\n");
    EXPECT_EQ(directory.files(), "a.obl");
}

TEST_F(PackageReading, NobodyNeedsToBeAsked)
{
    write("1.1.0.6141", "");

    const auto package =
        PackageReader::open(urlOf("a.obl"), nullptr, {}, {}, nullptr, nullptr, true);

    ASSERT_NE(package, nullptr);
    EXPECT_EQ(package->formatVersion().get(), "1.1.0.7049");
}

// The backup.

TEST_F(PackageReading, AnOldFileIsBackedUp)
{
    write("1.0.0.1", "1.1.0.6141");
    noBackup = false;

    ASSERT_NE(open(), nullptr) << logText();

    EXPECT_EQ(directory.files(), ".autosave/a_1_1_0_6141.obl a.obl");
    EXPECT_EQ(directory.read(".autosave/a_1_1_0_6141.obl"), directory.read("a.obl"));
    EXPECT_EQ(log.children().front()->text().toStdString(),
              "ERROR_FILE_BACKUP_DONE_" + directory.path(".autosave/a_1_1_0_6141.obl"));
    EXPECT_FALSE(log.hasError());
}

TEST_F(PackageReading, ABackupIsNamedByBaseNameVersionAndLastSuffix)
{
    directory.write(
        "a.b.obl", aPackage().with("formatVersion", "1.0.1.3962").without("updaterVersion").text());
    noBackup = false;

    ASSERT_NE(open("a.b.obl"), nullptr) << logText();

    EXPECT_EQ(directory.files(), ".autosave/a_1_0_1_3962.obl a.b.obl");
}

TEST_F(PackageReading, ABackupReplacesAFormerOne)
{
    write("1.1.0.6141", "");
    directory.write(".autosave/a_1_1_0_6141.obl", "former");
    directory.write(".autosave/other", "other");
    noBackup = false;

    ASSERT_NE(open(), nullptr) << logText();

    EXPECT_EQ(directory.read(".autosave/a_1_1_0_6141.obl"), directory.read("a.obl"));
    EXPECT_EQ(directory.read(".autosave/other"), "other");
}

TEST_F(PackageReading, AFailedBackupDoesNotStopTheUpdate)
{
    write("1.1.0.6141", "");
    directory.write(".autosave", "no directory");
    noBackup = false;

    const auto package = open();

    ASSERT_NE(package, nullptr);
    EXPECT_EQ(package->formatVersion().get(), "1.1.0.7049");
    EXPECT_EQ(log.children().front()->text().toStdString(),
              "ERROR_FILE_BACKUP_FAILED_" + directory.path(".autosave/a_1_1_0_6141.obl"));
    EXPECT_TRUE(log.hasError());
}

TEST_F(PackageReading, ABackupThatCannotBeWrittenDoesNotStopTheUpdate)
{
    write("1.1.0.6141", "");
    directory.makeDirectory(".autosave/a_1_1_0_6141.obl");
    noBackup = false;

    EXPECT_NE(open(), nullptr);

    EXPECT_EQ(log.children().front()->text().toStdString(),
              "ERROR_FILE_BACKUP_FAILED_" + directory.path(".autosave/a_1_1_0_6141.obl"));
}

TEST_F(PackageReading, AFileThatIsGoneMeanwhileIsNotBackedUp)
{
    write("1.1.0.6141", "");
    const auto removeFile = [this](const auto&...) {
        return std::filesystem::remove(directory.path("a.obl"));
    };

    EXPECT_NE(PackageReader::open(urlOf("a.obl"), &log, {}, removeFile, nullptr, nullptr, false),
              nullptr);

    EXPECT_EQ(log.children().front()->text(), "ERROR_FILE_BACKUP_FAILED_");
    EXPECT_EQ(directory.files(), "");
}

TEST_F(PackageReading, ACurrentFileIsNotBackedUp)
{
    write("1.1.0.7049", "");
    noBackup = false;

    ASSERT_NE(open(), nullptr) << logText();

    EXPECT_EQ(directory.files(), "a.obl");
}

TEST_F(PackageReading, NoBackupMeansNone)
{
    write("1.1.0.6141", "");

    ASSERT_NE(open(), nullptr) << logText();

    EXPECT_EQ(directory.files(), "a.obl");
}

// Failures.

TEST_F(PackageReading, AnUnknownEndingHasNoImporter)
{
    directory.write("a.OBL", aPackage().text());

    EXPECT_EQ(open("a.OBL"), nullptr);

    EXPECT_EQ(logText(), "Error: ERROR_NO_IMPORTER_FOUND\n");
}

TEST_F(PackageReading, AnotherSchemeHasNoDevice)
{
    EXPECT_EQ(open(QUrl("http://x/a.obl")), nullptr);

    EXPECT_EQ(logText(), "Error: ERROR_FAIL_TO_CREATE_DEVICE\n");
}

TEST_F(PackageReading, AMissingFileDoesNotOpen)
{
    EXPECT_EQ(open("missing.obl"), nullptr);

    EXPECT_EQ(logText(), "Error: ERROR_FAIL_TO_OPEN_URL_" + urlText("missing.obl") + "\n");
}

TEST_F(PackageReading, ADirectoryDoesNotOpen)
{
    directory.makeDirectory("a.obl");

    EXPECT_EQ(open(), nullptr);

    EXPECT_EQ(logText(), "Error: ERROR_FAIL_TO_OPEN_URL_" + urlText("a.obl") + "\n");
}

TEST_F(PackageReading, AFileNeedsAFormatVersion)
{
    write("1.1.0", "1.1.0.7049");

    EXPECT_EQ(open(), nullptr);

    EXPECT_EQ(logText(), "Error: ERROR_FAIL_TO_READ_VERSION_OF_URL_" + urlText("a.obl") + "\n");
}

TEST_F(PackageReading, AFileThatIsNoPackageHasNoVersion)
{
    directory.write("a.obl", "");

    EXPECT_EQ(open(), nullptr);

    EXPECT_EQ(logText(), "Error: ERROR_FAIL_TO_READ_VERSION_OF_URL_" + urlText("a.obl") + "\n");
}

TEST_F(PackageReading, ABadDocumentGivesNoPackage)
{
    directory.write("a.obl", aPackage().without("platform").text());

    EXPECT_EQ(open(), nullptr);

    ASSERT_EQ(log.children().size(), 2u) << logText();
    EXPECT_TRUE(log.children()[0]->text().startsWith("ERROR_XML_READ_ERROR :\n"));
    EXPECT_EQ(log.children()[1]->text(), "ERROR_FAIL_TO_CREATE_PACKAGE");
    EXPECT_EQ(log.children()[1]->level(), Orv::Core::MessageLevel::Error);
    EXPECT_FALSE(wasUpdated);
}

TEST_F(PackageReading, ABadOldDocumentFailsInItsFirstStep)
{
    directory.write(
        "a.obl",
        aPackage().with("formatVersion", "1.0.3.5017").without("updaterVersion").text() + "<x>");

    EXPECT_EQ(open(), nullptr);

    ASSERT_FALSE(log.children().empty());
    EXPECT_EQ(log.children().front()->text(), "1.1.0.5356 : NAME");
    EXPECT_EQ(log.children().back()->text(), "ERROR_FAIL_TO_APPLY_FORMAT_UPDATER_NAME");
    EXPECT_TRUE(log.hasError());
}

// Formats that no importer of the library reads.

// Importer and version reader of files that end in ".own", on a device that may refuse to go back.
class OwnDevice final : public QBuffer
{
public:
    explicit OwnDevice(bool goesBack) : m_goesBack(goesBack) {}
    bool seek(qint64 place) override { return m_goesBack && QBuffer::seek(place); }

private:
    bool m_goesBack;
};

using Document = std::unique_ptr<Orv::Data::BaseObject>;

Document aDocumentThatIsNoPackage()
{
    return std::make_unique<Ksx::Data::Content::Group>();
}

Document aPackageWithAReference()
{
    return TestSupport::packageFrom(aPackage().dependingOn("b.obl", 1));
}

struct OwnFormat
{
    Document (*import)() = &aDocumentThatIsNoPackage;
    bool goesBack = true;
};

class OwnImporter final : public Orv::Core::Extensions::IDataImporter
{
public:
    explicit OwnImporter(const OwnFormat& format) : m_format(format) {}
    bool isCompatible(const Version&) const override { return true; }
    bool accepts(const QUrl& url) const override { return url.toString().endsWith(".own"); }
    std::unique_ptr<QIODevice> createDevice(const QUrl&) const override
    {
        return std::make_unique<OwnDevice>(m_format.goesBack);
    }
    Version version() const override { return {}; }
    Document import(QIODevice&, MessageNode*,
                    const Orv::Core::Extensions::ProgressFunction&) const override
    {
        return m_format.import();
    }

private:
    OwnFormat m_format;
};

class OwnVersionReader final : public Orv::Core::Extensions::IDataFormatVersionReader
{
public:
    bool accepts(const Orv::Core::Extensions::IDataImporter& importer) const override
    {
        return typeid(importer) == typeid(OwnImporter);
    }
    Version version() const override { return {}; }
    bool read(QIODevice&, Version& version) const override
    {
        version = {1, 1, 0, 6140}; // before the last step of packages
        return true;
    }
};

// Behind all steps of the library, and the last that this version of the application takes.
constexpr Version LastStep{2, 0, 1, 9782};
constexpr Version StepOfALaterApplication{2, 0, 1, 9783};

// What a step does with the document.
bool changeNothing(QIODevice& /*device*/)
{
    return true;
}

bool closeDocument(QIODevice& device)
{
    device.close();
    return true;
}

class OwnUpdater final : public Orv::Core::Extensions::IDataFormatUpdater
{
public:
    OwnUpdater(const Version& updaterVersion, const Version& formatVersion,
               bool (*change)(QIODevice& device))
        : m_updaterVersion(updaterVersion), m_formatVersion(formatVersion), m_change(change)
    {}
    Version formatVersion() const override { return m_formatVersion; }
    Version updaterVersion() const override { return m_updaterVersion; }
    QString name() const override { return "OWN"; }
    QString description() const override { return {}; }
    bool accepts(const Orv::Core::Extensions::IDataImporter&) const override { return true; }
    bool update(QIODevice& device, MessageNode*,
                const Orv::Core::Extensions::ProgressFunction&) const override
    {
        return m_change(device);
    }

private:
    Version m_updaterVersion;
    Version m_formatVersion;
    bool (*m_change)(QIODevice& device);
};

// A step of packages, which fails.
class FailingUpdater final : public Ksx::Core::IPackageUpdater
{
public:
    explicit FailingUpdater(const Version& version) : m_version(version) {}
    Version formatVersion() const override { return m_version; }
    Version updaterVersion() const override { return m_version; }
    QString name() const override { return "FAILING"; }
    QString description() const override { return {}; }
    bool update(Package&, MessageNode*,
                const Orv::Core::Extensions::ProgressFunction&) const override
    {
        return false;
    }

private:
    Version m_version;
};

class OwnRegistry final : public Ksx::Core::ExtensionRegistry
{
public:
    explicit OwnRegistry(const OwnFormat& format = {})
    {
        add(std::make_unique<OwnImporter>(format));
        add(std::make_unique<OwnVersionReader>());
        setInstance(this);
    }
    ~OwnRegistry() { setInstance(nullptr); }
    void addUpdater(const Version& version) { addUpdater(version, version, &changeNothing); }
    void addUpdater(const Version& updaterVersion, const Version& formatVersion,
                    bool (*update)(QIODevice& device))
    {
        add(std::make_unique<OwnUpdater>(updaterVersion, formatVersion, update));
    }
    void addFailingUpdater(const Version& version)
    {
        add(std::make_unique<FailingUpdater>(version));
    }
};

TEST_F(PackageReading, ADeviceHasToGoBackBehindAVersion)
{
    const OwnRegistry registry({&aDocumentThatIsNoPackage, false});

    EXPECT_EQ(open("a.own"), nullptr);

    EXPECT_EQ(logText(), "Error: ERROR_FAIL_TO_RESET_DEVICE_READ_POSITION\n");
}

TEST_F(PackageReading, AStepHasToLeaveItsDocumentOpen)
{
    OwnRegistry registry;
    registry.addUpdater(LastStep, LastStep, &closeDocument);
    write("1.1.0.7049", "");

    EXPECT_EQ(open(), nullptr);

    EXPECT_EQ(logText(), "2.0.1.9782 : OWN\nError: ERROR_FAIL_TO_RESET_DEVICE_READ_POSITION\n");
}

TEST_F(PackageReading, AStepOfThePackageThatFailsEndsTheOpening)
{
    OwnRegistry registry;
    registry.addFailingUpdater(LastStep);
    write("1.1.0.7049", "");

    EXPECT_EQ(open(), nullptr);

    EXPECT_EQ(logText(), "2.0.1.9782 : FAILING\nError: ERROR_FAIL_TO_UPDATE_PACKAGE\n");
    EXPECT_FALSE(wasUpdated);
}

TEST_F(PackageReading, AnExceptionOfAnImporterIsAFailedLoad)
{
    const OwnRegistry registry({[]() -> Document { throw std::runtime_error("folly"); }});

    EXPECT_EQ(open("a.own"), nullptr);

    EXPECT_EQ(logText(), "Error: folly\nError: ERROR_FAIL_TO_CREATE_PACKAGE\n");
}

TEST_F(PackageReading, ALackOfMemoryIsNoFaultOfTheFile)
{
    const OwnRegistry registry({[]() -> Document { throw std::bad_alloc(); }});

    EXPECT_THROW(open("a.own"), std::bad_alloc);

    EXPECT_EQ(logText(), "");
}

TEST_F(PackageReading, ReferencesBesideWhatIsNoFileStayAsTheyAre)
{
    const OwnRegistry registry({&aPackageWithAReference});

    const auto package = open(QUrl("own://place/a.own"));

    ASSERT_NE(package, nullptr) << logText();
    EXPECT_EQ(package->dependencies().at(0).filename().get(), "b.obl");
}

TEST_F(PackageReading, AStepWithoutAFormatVersionLeavesThatOfTheFile)
{
    OwnRegistry registry;
    registry.addUpdater(LastStep, {}, &changeNothing);
    write("1.1.0.7049", "");

    const auto package = open();

    ASSERT_NE(package, nullptr) << logText();
    EXPECT_EQ(package->formatVersion().get(), "1.1.0.7049");
    EXPECT_EQ(package->updaterVersion().get(), "2.0.1.9782");
}

TEST_F(PackageReading, ADocumentHasToBeAPackage)
{
    const OwnRegistry registry;

    EXPECT_EQ(open("a.own"), nullptr);

    EXPECT_EQ(logText(), "Error: ERROR_WRONG_ROOT_OBJECT_TYPE\n");
}

TEST_F(PackageReading, WhatIsNoFileIsNotBackedUp)
{
    const OwnRegistry registry;
    noBackup = false;

    EXPECT_EQ(open(QUrl("own://place/a.own")), nullptr);

    EXPECT_EQ(logText(), "Error: ERROR_WRONG_ROOT_OBJECT_TYPE\n");
    EXPECT_EQ(questions, 1);
}

TEST_F(PackageReading, StepsGoUpToTheVersionOfTheApplication)
{
    OwnRegistry registry;
    registry.addUpdater(LastStep);
    registry.addUpdater(StepOfALaterApplication);
    registry.addFailingUpdater(StepOfALaterApplication);
    write("1.1.0.7049", "");

    EXPECT_NE(open(), nullptr) << logText();

    EXPECT_EQ(stepsAsked(), Lines({"2.0.1.9782"}));
    EXPECT_EQ(logText(), "2.0.1.9782 : OWN\n");
}

TEST_F(PackageReading, TheFormatsOfTheLibraryStayBesideOwnOnes)
{
    const OwnRegistry registry;
    write("1.1.0.7049", "");

    EXPECT_NE(open(), nullptr) << logText();
}

// The contexts in which translation files have the messages.

struct MessageCase
{
    const char* name;
    const char* file;
    const char* text; // the begin of the last message
};

std::ostream& operator<<(std::ostream& stream, const MessageCase& c)
{
    return stream << c.name;
}

class TranslatedMessage : public PackageReading, public testing::WithParamInterface<MessageCase>
{
protected:
    TranslatedMessage()
    {
        const auto old = [](const char* version) {
            return aPackage().with("formatVersion", version).without("updaterVersion");
        };
        directory.write("new.obl", old("1.1.0.7050").text());
        directory.write("noversion.obl", "");
        directory.write("nodocument.obl", aPackage().without("platform").text());
        directory.write("step.obl", old("1.0.3.5017").text() + "<x>");
        directory.write("old.obl", old("1.1.0.6141").text());
    }

    const TestSupport::EchoTranslator translator;
};

TEST_P(TranslatedMessage, HasTheContextOfTheReader)
{
    const OwnRegistry registry(
        {&aDocumentThatIsNoPackage, GetParam().file != std::string("stuck.own")});
    isConfirmed = GetParam().file != std::string("old.obl");

    EXPECT_EQ(open(GetParam().file), nullptr);

    ASSERT_FALSE(log.children().empty());
    const std::string text = log.children().back()->text().toStdString();
    EXPECT_EQ(text.substr(0, std::strlen(GetParam().text)), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Failures, TranslatedMessage,
    testing::Values(
        MessageCase{"NoImporter", "a.xml", "Ksx::Core::PackageReader|ERROR_NO_IMPORTER_FOUND"},
        MessageCase{"NoFile", "missing.obl", "Ksx::Core::PackageReader|ERROR_FAIL_TO_OPEN_URL_"},
        MessageCase{"NoVersion", "noversion.obl",
                    "Ksx::Core::PackageReader|ERROR_FAIL_TO_READ_VERSION_OF_URL_"},
        MessageCase{"TooNew", "new.obl",
                    "Ksx::Core::PackageReader|ERROR_APPLICATION_TOO_OLD_TO_OPEN_URL_"},
        MessageCase{"Stopped", "old.obl",
                    "Ksx::Core::PackageReader|ERROR_UPDATE_PROCESS_STOPED_BY_USER"},
        MessageCase{"Step", "step.obl",
                    "Ksx::Core::PackageReader|ERROR_FAIL_TO_APPLY_FORMAT_UPDATER_"
                    "Ksx::Core::OBLFormatUpdater5356|NAME"},
        MessageCase{"NoPackage", "nodocument.obl",
                    "Ksx::Core::PackageReader|ERROR_FAIL_TO_CREATE_PACKAGE"},
        MessageCase{"OtherDocument", "a.own",
                    "Ksx::Core::PackageReader|ERROR_WRONG_ROOT_OBJECT_TYPE"},
        MessageCase{"StuckDevice", "stuck.own",
                    "Ksx::Core|ERROR_FAIL_TO_RESET_DEVICE_READ_POSITION"}),
    caseName<MessageCase>);

TEST_F(PackageReading, AMissingDeviceIsToldInTheContextOfTheLibrary)
{
    const TestSupport::EchoTranslator translator;

    open(QUrl("http://x/a.obl"));

    EXPECT_EQ(logText(), "Error: Ksx::Core|ERROR_FAIL_TO_CREATE_DEVICE\n");
}

TEST_F(PackageReading, ABadDocumentIsToldInTheContextsOfImporterAndXmlReader)
{
    const TestSupport::EchoTranslator translator;
    directory.write("a.obl", aPackage().without("platform").text());

    open();

    ASSERT_FALSE(log.children().empty());
    EXPECT_TRUE(log.children().front()->text().startsWith(
        "Ksx::Core::OBLImporter|ERROR_XML_READ_ERROR :\n"
        "QObject|ORV_DATA_XML_DATA_READER_ERROR_XML_INVALID_MEMBER_"))
        << logText();
}

TEST_F(PackageReading, AFileThatBecomesShorterMeanwhileCannotBeRead)
{
    const TestSupport::EchoTranslator translator;
    const std::string group = aGroup(std::string(100000, 'x')); // more than is read at a time
    directory.write("a.obl", aPackage()
                                 .with("formatVersion", "1.1.0.5356")
                                 .without("updaterVersion")
                                 .containing(group)
                                 .text());
    const auto shorten = [this](const auto&...) {
        std::filesystem::resize_file(directory.path("a.obl"), 50000);
        return true;
    };

    EXPECT_EQ(PackageReader::open(urlOf("a.obl"), &log, {}, shorten, nullptr, nullptr, true),
              nullptr);

    EXPECT_EQ(logText(),
              "Error: Ksx::Core::PackageReader|ERROR_FAIL_TO_READ_URL_" + urlText("a.obl") + "\n");
}

TEST_F(PackageReading, AFileThatBecomesShorterWhileItIsImportedCannotBeRead)
{
    const std::string group = aGroup(std::string(1000000, 'x'));
    directory.write("a.obl", aPackage().containing(group).text());
    const auto shorten = [this](float /*fraction*/) {
        std::filesystem::resize_file(directory.path("a.obl"), 50000);
    };

    EXPECT_EQ(PackageReader::open(urlOf("a.obl"), &log, shorten, {}, nullptr, nullptr, true),
              nullptr);

    EXPECT_EQ(log.children().back()->text().toStdString(),
              "ERROR_FAIL_TO_READ_URL_" + urlText("a.obl"));
}

TEST_F(PackageReading, ABackupIsToldInTheContextOfTheReader)
{
    const TestSupport::EchoTranslator translator;
    write("1.1.0.6141", "");
    noBackup = false;

    open();

    EXPECT_TRUE(log.children().front()->text().startsWith(
        "Ksx::Core::PackageReader|ERROR_FILE_BACKUP_DONE_"))
        << logText();
}

TEST_F(PackageReading, AFailedBackupIsToldInTheContextOfTheReader)
{
    const TestSupport::EchoTranslator translator;
    write("1.1.0.6141", "");
    directory.write(".autosave", "no directory");
    noBackup = false;

    open();

    EXPECT_TRUE(log.children().front()->text().startsWith(
        "Ksx::Core::PackageReader|ERROR_FILE_BACKUP_FAILED_"))
        << logText();
}

struct SilentCase
{
    const char* name;
    const char* url;
    const char* document;
};

std::ostream& operator<<(std::ostream& stream, const SilentCase& c)
{
    return stream << c.name;
}

class SilentFailure : public PackageReading, public testing::WithParamInterface<SilentCase>
{};

TEST_P(SilentFailure, NeedsNoLog)
{
    directory.write("a.obl", GetParam().document);
    const QUrl url = *GetParam().url == '\0' ? urlOf("a.obl") : QUrl(GetParam().url);

    EXPECT_EQ(PackageReader::open(url, nullptr, {}, {}, nullptr, nullptr, false), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, SilentFailure,
    testing::Values(SilentCase{"NoImporter", "a.xml", ""},
                    SilentCase{"NoDevice", "http://x/a.obl", ""},
                    SilentCase{"NoFile", "file:///nowhere/a.obl", ""},
                    SilentCase{"NoVersion", "", ""},
                    SilentCase{"TooNew", "", "<formatVersion v=\"9.0.0.0\"/>"},
                    SilentCase{"FailingStep", "", "<formatVersion v=\"1.0.0.0\"/><x>"},
                    SilentCase{"NoPackage", "", "<formatVersion v=\"1.1.0.7049\"/>"},
                    SilentCase{"EmptyUrl", "x", ""}),
    caseName<SilentCase>);

// File references.

TEST_F(PackageReading, FileReferencesBecomeAbsolute)
{
    directory.write("in/a.obl", aPackage()
                                    .dependingOn("../b.obl", 1)
                                    .dependingOn("/x/c.obl", 2)
                                    .dependingOnItself(3)
                                    .dependingOn("obl://d.obl", 4)
                                    .dependingOn("obl://sub/d.obl", 5)
                                    .dependingOn("", 6)
                                    .containing(aResource("r", "./x y.png"))
                                    .text());

    const auto package = open("in/a.obl");

    ASSERT_NE(package, nullptr) << logText();
    const auto filename = [&](std::size_t index) {
        return package->dependencies().at(index).filename().get();
    };
    EXPECT_EQ(filename(0), directory.path("in") + "/../b.obl");
    EXPECT_EQ(filename(1), "/x/c.obl");
    EXPECT_EQ(filename(2), "?himself");
    EXPECT_EQ(filename(3), "obl://d.obl");
    EXPECT_EQ(filename(4), directory.path("in") + "/obl://sub/d.obl");
    EXPECT_EQ(filename(5), "");
}

// Puts a word behind each reference.
class AppendingConverter final : public Orv::Data::IXmlValueConverter
{
public:
    explicit AppendingConverter(std::string word) : m_word(std::move(word)) {}
    bool convert(const std::string& in, std::string& out) const override
    {
        out = in + m_word;
        return in != "?himself";
    }

private:
    std::string m_word;
};

TEST_F(PackageReading, ConvertersFollowInTheirOrder)
{
    const AppendingConverter first("-1");
    const AppendingConverter second("-2");
    converters = {&first, &second};
    directory.write("a.obl", aPackage().dependingOn("b.obl", 1).dependingOnItself(2).text());

    const auto package = open();

    ASSERT_NE(package, nullptr) << logText();
    EXPECT_EQ(package->dependencies().at(0).filename().get(), directory.path("b.obl") + "-1-2");
    EXPECT_EQ(package->dependencies().at(1).filename().get(), "?himself");
}

TEST_F(PackageReading, ThePresetsConverterTakesTheFirstDirectory)
{
    const Orv::Data::XmlValueConverterURLPrefixReplacement presets("obl://",
                                                                   {QDir("/one"), QDir("/two")});
    converters = {&presets};
    directory.write(
        "a.obl", aPackage().dependingOn("obl://b.obl", 1).dependingOn("obl://b/c.obl", 2).text());

    const auto package = open();

    ASSERT_NE(package, nullptr) << logText();
    EXPECT_EQ(package->dependencies().at(0).filename().get(), "/one/b.obl");
    EXPECT_EQ(package->dependencies().at(1).filename().get(), directory.path() + "/obl://b/c.obl");
}

TEST_F(PackageReading, ReferencesOfUpdatedPackagesAreConvertedToo)
{
    directory.write("a.obl", aPackage()
                                 .with("formatVersion", "1.1.0.5356")
                                 .without("updaterVersion")
                                 .dependingOn("b.obl", 1)
                                 .text());

    const auto package = open();

    ASSERT_NE(package, nullptr) << logText();
    EXPECT_EQ(package->dependencies().at(0).filename().get(), directory.path("b.obl"));
}

TEST_F(PackageReading, ProgressIsTold)
{
    write("1.0.1.3962", "");

    ASSERT_NE(open(), nullptr) << logText();

    EXPECT_FALSE(progress.empty());
}

} // namespace

// The place of a file that has another name.

TEST_F(PackageReading, ShowsEachStepWithWhatItLeaves)
{
    directory.write("a.obl", aPackage()
                                 .with("formatVersion", "1.1.0.5356")
                                 .without("updaterVersion")
                                 .dependingOn("b.obl", 7)
                                 .text());
    Lines stages;
    PackageReader::open(urlOf("a.obl"), nullptr, {}, {}, nullptr, nullptr, true, {},
                        [&stages](const Ksx::Core::UpdateStage& stage) {
                            std::string line =
                                stage.step == nullptr
                                    ? "begin"
                                    : stage.step->updaterVersion().toString().toStdString();
                            if (stage.document != nullptr)
                                line += ", " + std::string(stage.document->root().name());
                            else
                                line += stage.package->dependencies().at(0).uid().get() == 7
                                            ? ", the old uid"
                                            : ", a new uid";
                            stages.push_back(line);
                        });

    EXPECT_EQ(stages, (Lines{"begin, package", "1.1.0.7049, package", "begin, the old uid",
                             "1.1.0.6141, a new uid"}));
}

TEST_F(PackageReading, ADocumentThatDoesNotParseIsNoStage)
{
    directory.write("a.obl", "<package><formatVersion v=\"1.0.1.3000\"/><");
    int stages = 0;

    PackageReader::open(urlOf("a.obl"), &log, {}, {}, nullptr, nullptr, true, {},
                        [&stages](const Ksx::Core::UpdateStage&) { ++stages; });

    EXPECT_EQ(stages, 0);
    EXPECT_NE(logText().find("ERROR_FAIL_TO_APPLY_FORMAT_UPDATER_"), std::string::npos);
}

TEST_F(PackageReading, TakesAFileForOneAtAnotherPlace)
{
    directory.write("copy.tmp", aPackage().containing(aResource("r", "x.png")).text());

    const auto package =
        PackageReader::open(urlOf("copy.tmp"), &log, {}, {}, nullptr, nullptr, true,
                            QUrl::fromLocalFile(QStringLiteral("/somewhere/else/a.obl")));

    ASSERT_NE(package, nullptr) << logText();
    EXPECT_EQ(Ksx::Core::fileReferencesOf(*package).front()->get(), "/somewhere/else/x.png");
}
