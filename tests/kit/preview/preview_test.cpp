#include "ksx/kit/preview.h"

#include "support/packagetext.h"
#include "support/temporarydirectory.h"
#include <gtest/gtest.h>
#include <algorithm>

using Ksx::Kit::ElementChange;
using Ksx::Kit::Preview;
using Ksx::Kit::UpdateSettings;
using TestSupport::aGraphWithInstance;
using TestSupport::aGroup;
using TestSupport::aPackage;
using TestSupport::TemporaryDirectory;

namespace {

using Lines = std::vector<std::string>;

class PreviewOfUpdate : public testing::Test
{
protected:
    QString at(const std::string& name) const
    {
        return QString::fromStdString(directory.path(name));
    }
    Preview preview(const std::vector<std::string>& names) const
    {
        UpdateSettings settings;
        for (const std::string& name : names)
            settings.files.append(at(name));
        settings.outputFolder = QString::fromStdString(directory.path());
        return previewUpdate(settings);
    }
    static Lines linesOf(const std::vector<ElementChange>& changes)
    {
        Lines lines;
        for (const ElementChange& one : changes)
            lines.push_back(
                QStringLiteral("%1:%2 %3 %4 %5: %6 -> %7")
                    .arg(one.line)
                    .arg(one.column)
                    .arg(wordOf(one.kind), one.place, one.element, one.oldText, one.newText)
                    .toStdString());
        return lines;
    }

    TemporaryDirectory directory;
};

TEST_F(PreviewOfUpdate, TellsInputsFromDependencies)
{
    directory.write("a.obl", aPackage().dependingOn("b.obl", 7).text());
    directory.write("b.obl", aPackage().text());

    const Preview found = preview({"a.obl"});

    ASSERT_EQ(found.files.size(), 2U);
    EXPECT_EQ(found.files[0].file, at("a.obl"));
    EXPECT_FALSE(found.files[0].isDependency);
    EXPECT_EQ(found.files[1].file, at("b.obl"));
    EXPECT_TRUE(found.files[1].isDependency);
}

TEST_F(PreviewOfUpdate, NumbersNewUidsAlikeWhereverTheyAre)
{
    directory.write("a.obl", aPackage()
                                 .with("formatVersion", "1.1.0.5356")
                                 .without("updaterVersion")
                                 .containing(aGroup("g") + aGraphWithInstance("i", "pkg://g"))
                                 .text());

    const Preview found = preview({"a.obl"});

    ASSERT_EQ(found.files.size(), 1U);
    EXPECT_TRUE(found.files[0].hasNewUids);
    const Lines lines = linesOf(found.files[0].steps.back().changes);
    ASSERT_EQ(lines.size(), 7U);
    EXPECT_EQ(lines[2], "0:0 added  dependencies/dependency/uid:  -> new uid 1");
    EXPECT_EQ(lines[6].substr(lines[6].find(": ")), ": pkg://g -> pkg://g?dependency=new uid 1");
}

TEST_F(PreviewOfUpdate, HasNoNewUidsForACurrentPackage)
{
    directory.write("a.obl", aPackage().text());

    const Preview found = preview({"a.obl"});

    ASSERT_EQ(found.files.size(), 1U);
    EXPECT_FALSE(found.files[0].hasNewUids);
    EXPECT_TRUE(found.files[0].steps.empty());
    EXPECT_TRUE(found.hasChanges());
}

TEST_F(PreviewOfUpdate, FindsTheLinesOfTheFile)
{
    const std::string text =
        aPackage().with("formatVersion", "1.1.0.6141").without("updaterVersion").text();
    directory.write("a.obl", TestSupport::replaced(text, "><", ">\n<"));

    const Preview found = preview({"a.obl"});

    ASSERT_EQ(found.files.size(), 1U) << found.errors.join(' ').toStdString();
    EXPECT_EQ(linesOf(found.files[0].writing).front(),
              "5:31 changed  formatVersion: 1.1.0.6141 -> 1.1.0.7049");
}

TEST_F(PreviewOfUpdate, TellsReferencesFromOtherChanges)
{
    directory.write("sub/a.obl",
                    aPackage().containing(TestSupport::aResource("r", "x.png")).text());

    const Preview found = preview({"sub/a.obl"});

    ASSERT_EQ(found.files.size(), 1U);
    EXPECT_TRUE(found.files[0].writing.empty());
    ASSERT_EQ(found.files[0].references.size(), 1U);
    EXPECT_EQ(found.files[0].references[0].place, "pkg://r");
    EXPECT_EQ(found.files[0].references[0].element, "filepath");
    EXPECT_EQ(found.files[0].references[0].oldText, "x.png");
    EXPECT_EQ(found.files[0].references[0].newText, "sub/x.png");
}

TEST_F(PreviewOfUpdate, LeavesOnlyTheLastPackageOfATarget)
{
    directory.write("sub/a.obl", aPackage().named("first").text());
    directory.write("a.obl", aPackage().named("second").text());

    const Preview found = preview({"sub/a.obl", "a.obl"});

    ASSERT_EQ(found.files.size(), 2U);
    EXPECT_TRUE(found.files[0].isReplaced);
    EXPECT_FALSE(found.files[0].isChanged);
    EXPECT_FALSE(found.files[1].isReplaced);
    EXPECT_TRUE(found.files[1].isChanged);
}

TEST_F(PreviewOfUpdate, GoesOnBehindFilesThatFail)
{
    directory.write("a.obl", "<package><formatVersion v=\"1.0.3.5017\"/></package>");
    directory.write("b.obl", aPackage().text());

    const Preview found = preview({"a.obl", "none.obl", "b.obl"});

    EXPECT_EQ(found.files.size(), 1U);
    ASSERT_EQ(found.failures.size(), 2U);
    EXPECT_EQ(found.failures[0].file, at("a.obl"));
    EXPECT_EQ(found.failures[1].reason, "there is no such file");
    EXPECT_EQ(found.errors,
              (QStringList{"Cannot load: " + at("a.obl"), "Packages cannot be correctly loaded"}));
}

TEST_F(PreviewOfUpdate, TellsItsProgress)
{
    directory.write("a.obl", aPackage().dependingOn("b.obl", 7).text());
    directory.write("b.obl", aPackage().text());
    UpdateSettings settings;
    settings.files = QStringList{at("a.obl")};
    Lines told;

    previewUpdate(settings, [&told](std::size_t done, std::size_t total) {
        told.push_back(std::to_string(done) + " of " + std::to_string(total));
    });

    EXPECT_EQ(told, (Lines{"1 of 2", "2 of 2"}));
}

TEST_F(PreviewOfUpdate, MayBeMadeSeveralTimes)
{
    directory.write("a.obl", aPackage().dependingOnItself(7).text());
    const Preview first = preview({"a.obl"});

    const Preview second = preview({"a.obl"});

    EXPECT_EQ(first.files.size(), second.files.size());
    EXPECT_EQ(first.files[0].sha256, second.files[0].sha256);
}

} // namespace
