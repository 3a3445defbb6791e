#include "ksx/core/filereferences.h"

#include "data/content/package.h"
#include "support/packagetext.h"
#include <gtest/gtest.h>
#include <algorithm>

using Ksx::Core::fileReferencesOf;
using Ksx::Core::TextAttribute;
using Ksx::Core::visitTexts;
using TestSupport::aGroup;
using TestSupport::aGroupSaying;
using TestSupport::aPackage;
using TestSupport::aResource;
using TestSupport::packageFrom;

namespace {

using Texts = std::vector<std::string>;

Texts valuesOf(const std::vector<TextAttribute*>& attributes)
{
    Texts values;
    std::transform(attributes.begin(), attributes.end(), std::back_inserter(values),
                   [](const TextAttribute* attribute) { return attribute->get(); });
    return values;
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

TEST(FileReferences, CanBeChangedInTheirPlace)
{
    const auto package = packageFrom(aPackage().dependingOn("b.obl", 1));

    fileReferencesOf(*package).front()->assign("c.obl");

    EXPECT_EQ(package->dependencies().at(0).filename().get(), "c.obl");
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
