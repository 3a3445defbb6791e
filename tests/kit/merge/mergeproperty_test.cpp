// Changes of different objects always merge.
#include "data/content/package.h"
#include "data/filename.h"
#include "kit/merge/randomsides.h"
#include "ksx/core/packagereader.h"
#include "ksx/core/packagewriter.h"
#include "ksx/kit/check.h"
#include "ksx/kit/merge.h"
#include "support/paths.h"
#include "support/temporarydirectory.h"
#include <QDir>
#include <QUrl>
#include <gtest/gtest.h>
#include <algorithm>
#include <tuple>

using Ksx::Core::PackageReader;
using Ksx::Core::savePackage;
using Ksx::Kit::checkPackage;
using Ksx::Kit::comparePackages;
using Ksx::Kit::Finding;
using Ksx::Kit::mergePackages;
using Ksx::Kit::MergeVersions;
using Ksx::Kit::Severity;
using TestSupport::RandomSides;
using TestSupport::sourcePath;
using TestSupport::TemporaryDirectory;

namespace {

using Lines = std::vector<std::string>;
using Parameters = std::tuple<const char*, unsigned>;

const QDir Presets(QStringLiteral("/nowhere"));

class ChangesOfDifferentObjects : public testing::TestWithParam<Parameters>
{
protected:
    ChangesOfDifferentObjects()
    {
        RandomSides sides(std::get<1>(GetParam()));
        write("base.obl", [](auto&) {});
        write("ours.obl", [&](auto& package) { sides.change(package, 0); });
        write("theirs.obl", [&](auto& package) { sides.change(package, 1); });
    }

    QString at(const std::string& name) const { return Orv::fromBytes(directory.path(name)); }

    template <class Change>
    void write(const std::string& name, Change&& change) const
    {
        const auto package = PackageReader::open(QUrl::fromLocalFile(place), nullptr, {}, {},
                                                 nullptr, nullptr, true);
        change(*package);
        savePackage(*package, at(name), Presets, nullptr, place);
    }

    // Returns the number of conflicts.
    std::size_t merge(const std::string& ours, const std::string& theirs, const std::string& out)
    {
        const MergeVersions versions{
            {at("base.obl"), place}, {at(ours), place}, {at(theirs), place}};
        return mergePackages(versions, at(out), {}, file, reason).value().conflicts.size();
    }

    Lines differences(const std::string& second)
    {
        Lines lines;
        const auto found =
            comparePackages({at("base.obl"), place}, {at(second), place}, {true}, file, reason);
        for (const auto& one : found.value())
            lines.push_back((wordOf(one.kind) + one.place + one.within.join('/') + one.object +
                             one.name + one.member + one.before + "->" + one.after)
                                .toStdString());
        std::sort(lines.begin(), lines.end());
        return lines;
    }

    Lines errorsOf(const std::string& name)
    {
        Lines lines;
        const auto findings = checkPackage(at(name), {}, reason);
        for (const Finding& one : findings.value())
            if (one.kind().severity == Severity::Error)
                lines.push_back(one.text.toStdString());
        return lines;
    }

    TemporaryDirectory directory;
    const QString place = QString::fromStdString(sourcePath("examples/") + std::get<0>(GetParam()));
    QString file;
    QString reason;
};

Lines joined(const Lines& first, const Lines& second)
{
    Lines all;
    std::merge(first.begin(), first.end(), second.begin(), second.end(), std::back_inserter(all));
    return all;
}

} // namespace

TEST_P(ChangesOfDifferentObjects, AlwaysMerge)
{
    EXPECT_EQ(merge("ours.obl", "theirs.obl", "out.obl"), 0u);
}

TEST_P(ChangesOfDifferentObjects, AreAllThatDiffersInTheMergedPackage)
{
    merge("ours.obl", "theirs.obl", "out.obl");

    EXPECT_GT(differences("ours.obl").size(), 1u);
    EXPECT_EQ(differences("out.obl"), joined(differences("ours.obl"), differences("theirs.obl")));
}

TEST_P(ChangesOfDifferentObjects, GiveTheSameBytesWhicheverSideIsOurs)
{
    merge("ours.obl", "theirs.obl", "out.obl");
    merge("theirs.obl", "ours.obl", "turned.obl");

    EXPECT_EQ(directory.read("out.obl"), directory.read("turned.obl"));
}

TEST_P(ChangesOfDifferentObjects, OfOneSideAloneGiveThatSide)
{
    EXPECT_EQ(merge("ours.obl", "base.obl", "out.obl"), 0u);
    EXPECT_EQ(merge("base.obl", "ours.obl", "turned.obl"), 0u);

    EXPECT_EQ(directory.read("out.obl"), directory.read("ours.obl"));
    EXPECT_EQ(directory.read("turned.obl"), directory.read("ours.obl"));
}

TEST_P(ChangesOfDifferentObjects, MadeOnBothSidesGiveEitherSide)
{
    EXPECT_EQ(merge("theirs.obl", "theirs.obl", "out.obl"), 0u);

    EXPECT_EQ(directory.read("out.obl"), directory.read("theirs.obl"));
}

TEST_P(ChangesOfDifferentObjects, GiveASoundPackage)
{
    merge("ours.obl", "theirs.obl", "out.obl");

    EXPECT_EQ(errorsOf("out.obl"), errorsOf("base.obl"));
}

INSTANTIATE_TEST_SUITE_P(Seeds, ChangesOfDifferentObjects,
                         testing::Combine(testing::Values("wood/wood_planks.obl",
                                                          "mixed/everything.obl",
                                                          "bricks/brick_wall.obl"),
                                          testing::Range(1u, 21u)));
