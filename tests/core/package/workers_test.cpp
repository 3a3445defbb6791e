// Packages are read and written by several threads as by one.
#include "core/messagenode.h"
#include "data/content/package.h"
#include "ksx/core/dependencyopener.h"
#include "ksx/core/packagesaver.h"
#include "ksx/core/uidsource.h"
#include "support/packagetext.h"
#include "support/temporarydirectory.h"
#include <gtest/gtest.h>
#include <random>

using Ksx::Core::DependencyOpener;
using Ksx::Core::PackageSaver;
using Ksx::Core::PackagesListManager;
using Ksx::Core::UidSource;
using TestSupport::aPackage;
using TestSupport::packageFrom;
using TestSupport::PackageText;
using TestSupport::replaced;
using TestSupport::TemporaryDirectory;

namespace {

constexpr int PackageCount = 40;

std::string nameOf(unsigned number)
{
    return "p" + std::to_string(number) + ".obl";
}

std::string nameOfNew(std::size_t number)
{
    return "new" + std::to_string(number) + ".obl";
}

// Depends on a few others, now and then on a missing file or on one that is no package.
std::string randomPackage(unsigned number, std::mt19937& engine)
{
    const auto random = [&engine](unsigned count) {
        return static_cast<unsigned>(engine() % count);
    };
    PackageText package = aPackage().named(nameOf(number));
    const unsigned dependencies = random(4);
    for (unsigned i = 0; i < dependencies; ++i)
        package.dependingOn(nameOf(random(PackageCount + 1)), random(6) + 1);
    if (random(15) == 0)
        return "no package";
    return random(3) == 0 ? package.text() : replaced(package.text(), "1.1.0.7049", "1.0.1.3000");
}

class Workers : public testing::TestWithParam<unsigned>
{
protected:
    Workers()
    {
        UidSource::setClock([] { return std::time_t{1000}; });
    }
    ~Workers() override { UidSource::setClock({}); }

    QString at(const std::string& name) const
    {
        return QString::fromStdString(directory.path(name));
    }

    // Returns the paths of packages "p0.obl", "p1.obl" and so on.
    QStringList writeOldPackages(unsigned count)
    {
        QStringList paths;
        for (unsigned i = 0; i < count; ++i)
            paths << QString::fromStdString(
                directory.write(nameOf(i), replaced(aPackage().named(nameOf(i)).text(),
                                                    "1.1.0.7049", "1.0.1.3000")));
        return paths;
    }

    // Opens packages at random and saves those that are open. Returns all that is seen of it.
    std::string outcome(unsigned seed, unsigned workers, DependencyOpener::OnFailure onFailure)
    {
        UidSource::shared().setCounter(0);
        UidSource::ofUpdater().setCounter(0);
        std::mt19937 engine(seed);
        for (unsigned i = 0; i < PackageCount; ++i)
            directory.write(nameOf(i), randomPackage(i, engine));
        PackagesListManager manager;
        DependencyOpener opener(manager, {}, onFailure);
        opener.setWorkers(workers);
        Orv::Core::MessageNode report;
        const bool isOpen = opener.open({at(nameOf(0)), at(nameOf(1)), at(nameOf(2))}, &report);
        std::string seen = (isOpen ? "open\n" : "failed\n") + report.toText().toStdString();
        for (const DependencyOpener::Failure& failure : opener.failures())
            seen += failure.filename.toStdString() + (failure.isDependency ? " +\n" : "\n");
        return seen + saved(manager, workers);
    }

    // Returns true if several workers leave the same as one with packages of many seeds.
    testing::AssertionResult areLikeOne(DependencyOpener::OnFailure onFailure)
    {
        for (unsigned seed = 0; seed < 4; ++seed)
            if (outcome(seed, GetParam(), onFailure) != outcome(seed, 1, onFailure))
                return testing::AssertionFailure() << "seed " << seed;
        return testing::AssertionSuccess();
    }

    // Saves all packages. Every second one goes to one file.
    std::string saved(PackagesListManager& manager, unsigned workers)
    {
        PackageSaver saver(QDir(QStringLiteral("/nowhere")), workers);
        const auto packages = manager.openPackages();
        for (std::size_t i = 0; i < packages.size(); ++i)
            saver.add(*packages[i], at(i % 2 == 0 ? "shared.obl" : nameOfNew(i)));
        std::string seen;
        for (std::size_t i = 0; i < packages.size(); ++i) {
            const bool isSaved = saver.next().isSaved;
            seen += manager.filePath(*packages[i]).toStdString() + (isSaved ? "\n" : " failed\n");
        }
        for (std::size_t i = 1; i < packages.size(); i += 2)
            seen += directory.read(nameOfNew(i));
        return packages.empty() ? seen : seen + directory.read("shared.obl");
    }

    TemporaryDirectory directory;
};

TEST_P(Workers, LeaveTheSameAsOneThatGoesOnAfterFailures)
{
    EXPECT_TRUE(areLikeOne(DependencyOpener::OnFailure::GoOn));
}

TEST_P(Workers, LeaveTheSameAsOneThatStopsAtAFailure)
{
    EXPECT_TRUE(areLikeOne(DependencyOpener::OnFailure::Stop));
}

TEST_P(Workers, ReadAndWriteManyPackagesAtOnce)
{
    PackagesListManager manager;
    DependencyOpener opener(manager, {});
    opener.setWorkers(GetParam());
    ASSERT_TRUE(opener.open(writeOldPackages(60)));
    EXPECT_EQ(manager.openPackages().size(), 60u);
    saved(manager, GetParam());
    EXPECT_EQ(directory.read(nameOfNew(59)), aPackage().named("p59.obl").text());
}

INSTANTIATE_TEST_SUITE_P(InThreads, Workers, testing::Values(0u, 2u, 3u, 8u));

class SavedPackages : public testing::TestWithParam<unsigned>
{
protected:
    // Adds a package of that identifier.
    void add(const std::string& identifier, const std::string& file)
    {
        packages.push_back(packageFrom(aPackage().named(identifier)));
        saver.add(*packages.back(), QString::fromStdString(directory.path(file)));
    }
    // Returns "+" for a package that is saved, "-" for one that is not.
    std::string results()
    {
        std::string text;
        for (std::size_t i = 0; i < packages.size(); ++i)
            text += saver.next().isSaved ? '+' : '-';
        return text;
    }

    TemporaryDirectory directory;
    std::vector<std::unique_ptr<Ksx::Data::Content::Package>> packages;
    PackageSaver saver{QDir(QStringLiteral("/nowhere")), GetParam()};
};

TEST_P(SavedPackages, LeaveTheLastOneWhereSeveralGoToOneFile)
{
    directory.makeDirectory("folder");
    directory.makeLink("link", "folder");
    add("a", "folder/a.obl");
    add("b", "link/a.obl");
    add("c", "folder/../folder/a.obl");
    add("d", "link/a.obl");
    EXPECT_EQ(results(), "++++");
    EXPECT_EQ(directory.read("folder/a.obl"), aPackage().named("d").text());
}

TEST_P(SavedPackages, LeaveTheLastOneBehindALinkToOneFile)
{
    directory.makeLink("link.obl", directory.path("a.obl"));
    add("a", "a.obl");
    add("b", "link.obl");
    add("c", "a.obl");
    add("d", "link.obl");
    EXPECT_EQ(results(), "++++");
    EXPECT_EQ(directory.read("a.obl"), aPackage().named("d").text());
}

TEST_P(SavedPackages, AreWrittenAlsoBehindOneThatFails)
{
    add("a", "a.obl");
    add("b", "missing/b.obl");
    add("c", "c.obl");
    EXPECT_EQ(results(), "+-+");
    EXPECT_EQ(directory.read("c.obl"), aPackage().named("c").text());
    EXPECT_EQ(directory.files(), "a.obl c.obl");
}

TEST_P(SavedPackages, GoToADeviceAmongOthers)
{
    add("a", "a.obl");
    add("b", "/dev/null");
    add("c", "c.obl");
    EXPECT_EQ(results(), "+++");
}

TEST_P(SavedPackages, AreNotWrittenBeforeSomebodyAsks)
{
    add("a", "a.obl");
    add("b", "b.obl");
    add("c", "c.obl");
    EXPECT_EQ(directory.files(), "");
    EXPECT_EQ(results(), "+++");
}

INSTANTIATE_TEST_SUITE_P(ByWorkers, SavedPackages, testing::Values(0u, 1u, 2u, 8u));

} // namespace
