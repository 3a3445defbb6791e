#include "ksx/core/filereferences.h"

#include "data/content/package.h"
#include "data/treewalk.h"
#include "support/golden.h"
#include "support/packagetext.h"
#include "support/paths.h"
#include <gtest/gtest.h>
#include <algorithm>
#include <regex>
#include <sstream>

using Ksx::Core::fileReferencesOf;
using Ksx::Core::TextAttribute;
using Ksx::Core::visitTexts;
using TestSupport::aGroup;
using TestSupport::aGroupSaying;
using TestSupport::aPackage;
using TestSupport::aResource;
using TestSupport::goldenPath;
using TestSupport::packageFrom;
using TestSupport::readFile;

namespace {

using Texts = std::vector<std::string>;

Texts valuesOf(const std::vector<TextAttribute*>& attributes)
{
    Texts values;
    std::transform(attributes.begin(), attributes.end(), std::back_inserter(values),
                   [](const TextAttribute* attribute) { return attribute->get(); });
    return values;
}

// With single blanks.
Texts linesWith(const std::string& word, const std::string& text)
{
    static const std::regex blanks(" +");
    Texts found;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        if (line.find(word) != std::string::npos)
            found.push_back(std::regex_replace(line, blanks, " "));
    return found;
}

TEST(FileReferences, AreThoseOfDependenciesAndResourcesInDocumentOrder)
{
    const auto package =
        packageFrom(aPackage()
                        .dependingOn("b.obl", 1)
                        .dependingOnItself(2)
                        .containing(aResource("r", "x.png") + aGroup("g", aResource("s", "y.png")))
                        .containing(aResource("t", "")));

    EXPECT_EQ(valuesOf(fileReferencesOf(*package)),
              Texts({"b.obl", "?himself", "x.png", "y.png", ""}));
}

TEST(FileReferences, AreNoneInAPackageThatUsesNoFile)
{
    const auto package = packageFrom(aPackage().containing(aGroupSaying("g", "x.png")));

    EXPECT_TRUE(fileReferencesOf(*package).empty());
}

Texts valuesWithTheFlag(const Ksx::Data::Content::Package& package)
{
    Texts values;
    Orv::Data::visitTree(static_cast<const Orv::Data::BaseObject&>(package),
                         [&](const Orv::Data::BaseObject& object) {
                             if ((object.getMeta().valueFlags & Orv::Data::ValueFlag::FilePath) !=
                                 0)
                                 values.push_back(dynamic_cast<const TextAttribute&>(object).get());
                         });
    return values;
}

TEST(FileReferences, AreAllThatTheTreeHas)
{
    const auto package =
        packageFrom(readFile(TestSupport::sourcePath("examples/mixed/everything.obl")));

    EXPECT_FALSE(fileReferencesOf(*package).empty());
    EXPECT_EQ(valuesOf(fileReferencesOf(*package)), valuesWithTheFlag(*package));
}

// Those that are looked for; a third would have to be.
TEST(FileReferences, AreDeclaredInTwoRows)
{
    EXPECT_EQ(linesWith("file-path", readFile(goldenPath("schema.txt"))),
              Texts({"filename string required file-path", "filepath string required file-path"}));
}

TEST(FileReferences, CanBeChangedInTheirPlace)
{
    const auto package = packageFrom(aPackage().dependingOn("b.obl", 1));

    fileReferencesOf(*package).front()->assign("c.obl");

    EXPECT_EQ(package->dependencies().at(0).filename().get(), "c.obl");
}

TEST(VisitTexts, ForReadingCallsForTheSameTexts)
{
    const auto package =
        packageFrom(aPackage().dependingOn("b.obl", 1).containing(aGroupSaying("g", "d")));
    Texts written;
    Texts visited;

    visitTexts(*package, [&](TextAttribute& text) { written.push_back(text.get()); });
    visitTexts(std::as_const(*package),
               [&](const TextAttribute& text) { visited.push_back(text.get()); });

    EXPECT_EQ(visited, written);
}

TEST(VisitTexts, CallsForEveryTextAndForNothingElse)
{
    const auto package =
        packageFrom(aPackage().dependingOn("b.obl", 1).containing(aGroupSaying("g", "d")));
    Texts visited;

    visitTexts(*package, [&](TextAttribute& text) { visited.push_back(text.get()); });

    EXPECT_EQ(visited, Texts({"Kestrix", "package", "", "1.1.0.7049", "1.1.0.7049", "me",
                              "{00000000-0000-0000-0000-000000000001}", "default", "", "b.obl",
                              "package", "g", "d"}));
}

} // namespace
