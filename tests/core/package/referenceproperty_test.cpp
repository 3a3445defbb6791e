// File references of any form come out of a second update as they came out of the first.
#include "core/fileplace.h"
#include "data/content/package.h"
#include "data/filename.h"
#include "data/xmlvalueconverter.h"
#include "ksx/core/filereferences.h"
#include "ksx/core/packagereader.h"
#include "ksx/core/packagewriter.h"
#include "support/packagetext.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include <QUrl>
#include <gtest/gtest.h>
#include <algorithm>

namespace {

using Ksx::Core::PackageReader;
using Ksx::Core::savePackage;
using Ksx::Data::Content::Package;
using TestSupport::aPackage;
using TestSupport::aResource;
using TestSupport::pick;
using TestSupport::seededRandom;
using TestSupport::TemporaryDirectory;
using Names = std::vector<std::string>;

std::string randomReference(std::mt19937& random)
{
    static const Names parts = {"/",
                                "/",
                                "..",
                                ".",
                                "d.obl",
                                "x.png",
                                "a",
                                "obl:",
                                "obl://",
                                "scheme",
                                "://",
                                ":",
                                "?",
                                "#",
                                "host",
                                "1:2",
                                " ",
                                "%41",
                                "%zz",
                                "@",
                                "[",
                                "]",
                                "\\",
                                "&",
                                "<",
                                "\"",
                                "'",
                                "~",
                                "?himself",
                                "presets",
                                "short",
                                "real",
                                "\t",
                                "\n",
                                "\r",
                                "\x7f",
                                "\xc2\x85",
                                "\xc3\xa9",
                                "*",
                                "|",
                                "file:",
                                "//",
                                "\xef\xbb\xbf",
                                "\xf0\x9f\x8c\xb2",
                                "\xef\xb7\x90",
                                "\xe2\x80\xa8"};
    std::string reference;
    for (int left = pick(random, 0, 6); left > 0; --left)
        reference += parts[pick<std::size_t>(random, 0, parts.size() - 1)];
    return reference;
}

class References : public testing::Test
{
protected:
    References()
    {
        directory.makeDirectory("in");
        directory.write("real/deep/x.png", "");
        directory.write("real/x.png", "");
        directory.write("presets/d.obl", "");
        directory.makeLink("short", "real/deep");
        directory.makeLink("out", "real");
    }
    QString at(const std::string& name) const
    {
        return QString::fromStdString(directory.path(name));
    }
    std::unique_ptr<Package> open(const std::string& name) const
    {
        const Orv::Data::XmlValueConverterURLPrefixReplacement scheme("obl://", {presets});
        const PackageReader::Converters converters{&scheme};
        return PackageReader::open(QUrl::fromLocalFile(at(name)), nullptr, {}, {}, &converters,
                                   nullptr, true);
    }
    Names referencesOf(const Package& package) const
    {
        Names names;
        for (const auto* reference : Ksx::Core::fileReferencesOf(package))
            names.push_back(reference->get());
        return names;
    }
    // Writes a package with such references to in/a.obl.
    void writeRandom(std::mt19937& random) const
    {
        std::string content;
        for (int i = 0; i < 60; ++i)
            content += aResource("r", randomReference(random));
        directory.write("in/a.obl", aPackage().containing(content).text());
    }
    // Saves a package into a folder and opens the result.
    std::unique_ptr<Package> saved(const Package& package, const std::string& folder) const
    {
        const bool isSaved = savePackage(package, at(folder + "/b.obl"), presets);
        return isSaved ? open(folder + "/b.obl") : nullptr;
    }
    // The first reference that another save to the same folder changes.
    std::string firstChanged(std::mt19937 random, const std::string& folder) const
    {
        for (int i = 0; i < 30; ++i) {
            writeRandom(random);
            const auto second = saved(*open("in/a.obl"), folder);
            const std::string bytes = directory.read(folder + "/b.obl");
            const auto third = saved(*second, folder);
            if (directory.read(folder + "/b.obl") != bytes)
                return firstOther(referencesOf(*second), referencesOf(*third));
        }
        return {};
    }
    // The first reference that leads elsewhere once it has been written to that folder.
    std::string firstAstray(std::mt19937 random, const std::string& folder) const
    {
        for (int i = 0; i < 30; ++i) {
            writeRandom(random);
            const auto first = open("in/a.obl");
            const auto second = saved(*first, folder);
            std::string other = firstOther(targetsOf(*first), targetsOf(*second));
            if (!other.empty())
                return other;
        }
        return {};
    }
    static std::string firstOther(const Names& before, const Names& after)
    {
        const auto place = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
        return place.first == before.end() ? "" : *place.first + " became " + *place.second;
    }
    Names targetsOf(const Package& package) const
    {
        Names targets = referencesOf(package);
        for (std::string& target : targets)
            target = targetOf(target);
        return targets;
    }
    // Below the presets only the bare name is kept.
    std::string targetOf(const std::string& reference) const
    {
        const QString path = Orv::fromBytes(reference);
        if (!path.startsWith('/'))
            return reference;
        const QString real = Orv::Core::realPath(path);
        const QString cleaned = QDir::cleanPath(real.isEmpty() ? path : real);
        const QString below = presets.absolutePath() + '/';
        return Orv::toBytes(cleaned.startsWith(below) ? below + cleaned.section('/', -1) : cleaned);
    }

    TemporaryDirectory directory;
    const QDir presets{at("presets")};
};

TEST_F(References, OfAnyFormAreWrittenTheSameAgain)
{
    EXPECT_EQ(firstChanged(seededRandom(20261122), "in"), "");
}

TEST_F(References, OfAnyFormAreWrittenTheSameAgainElsewhere)
{
    EXPECT_EQ(firstChanged(seededRandom(20261123), "real/deep"), "");
}

TEST_F(References, OfAnyFormAreWrittenTheSameAgainBehindALink)
{
    EXPECT_EQ(firstChanged(seededRandom(20261124), "out"), "");
}

TEST_F(References, OfAnyFormAreWrittenTheSameAgainInThePresets)
{
    EXPECT_EQ(firstChanged(seededRandom(20261125), "presets"), "");
}

TEST_F(References, LeadToTheSameFilesFromElsewhere)
{
    EXPECT_EQ(firstAstray(seededRandom(20261126), "real/deep"), "");
}

} // namespace
