#include "ksx/kit/inventory.h"

#include "data/filename.h"
#include "support/packagetext.h"
#include "support/paths.h"
#include "support/temporarydirectory.h"
#include <gtest/gtest.h>

using Ksx::Kit::DependencyWay;
using Ksx::Kit::Graph;
using Ksx::Kit::Input;
using Ksx::Kit::Inventory;
using Ksx::Kit::nameOfType;
using Ksx::Kit::takeInventory;
using TestSupport::aGraphWithInstance;
using TestSupport::aGroup;
using TestSupport::aPackage;
using TestSupport::aResource;
using TestSupport::PackageText;
using TestSupport::sourcePath;
using TestSupport::TemporaryDirectory;

namespace {

class InventoryOf : public testing::Test
{
protected:
    std::optional<Inventory> take(const PackageText& package, const QStringList& presets = {})
    {
        return takeInventory(Orv::fromBytes(directory.write("a.obl", package.text())), presets,
                             reason);
    }
    std::optional<Inventory> takeExample(const std::string& name)
    {
        return takeInventory(Orv::fromBytes(sourcePath("examples/" + name)), {}, reason);
    }
    QString path(const std::string& name) const { return Orv::fromBytes(directory.path(name)); }

    TemporaryDirectory directory;
    QString reason;
};

} // namespace

TEST_F(InventoryOf, APackageHasItsObjectsInTheirGroups)
{
    const auto found = take(aPackage().containing(aGroup(
        "outer", aGroup("inner", aResource("r", "x.png")) + aGraphWithInstance("g", "pkg://x"))));

    ASSERT_TRUE(found) << reason.toStdString();
    ASSERT_EQ(found->content.groups.size(), 1U);
    const auto& outer = found->content.groups.front();
    EXPECT_EQ(outer.identifier, "outer");
    ASSERT_EQ(outer.content.graphs.size(), 1U);
    EXPECT_EQ(outer.content.graphs.front().identifier, "g");
    EXPECT_EQ(outer.content.graphs.front().nodeCount, 1U);
    EXPECT_EQ(outer.content.groups.front().content.resources.front().identifier, "r");
}

TEST_F(InventoryOf, AGraphHasItsInputsWithTypesDefaultsAndRanges)
{
    const auto found = takeExample("wood/wood_planks.obl");

    ASSERT_TRUE(found) << reason.toStdString();
    const Graph& graph = found->content.graphs.front();
    ASSERT_EQ(graph.inputs.size(), 5U);
    const Input& gap = graph.inputs[1];
    EXPECT_EQ(gap.identifier, "gap");
    EXPECT_EQ(gap.label, "Gap");
    EXPECT_EQ(gap.group, "Planks");
    EXPECT_EQ(nameOfType(gap.type), "float1");
    EXPECT_EQ(gap.defaultValue, "0.02");
    EXPECT_EQ(gap.widget, "slider");
    EXPECT_EQ(gap.minimum, "0");
    EXPECT_EQ(gap.maximum, "0.2");
}

TEST_F(InventoryOf, AGraphHasItsOutputsWithUsages)
{
    const auto found = takeExample("wood/wood_planks.obl");

    ASSERT_TRUE(found) << reason.toStdString();
    const Graph& graph = found->content.graphs.front();
    ASSERT_EQ(graph.outputs.size(), 4U);
    EXPECT_EQ(graph.outputs[1].identifier, "height");
    ASSERT_EQ(graph.outputs[1].usages.size(), 1U);
    EXPECT_EQ(graph.outputs[1].usages.front().name, "height");
    EXPECT_EQ(graph.outputs[1].usages.front().components, "R");
}

TEST_F(InventoryOf, AnAssemblyHasTheGraphsOfItsDescription)
{
    const auto found = takeExample("assemblies/rust_effect.oblasm");

    ASSERT_TRUE(found) << reason.toStdString();
    EXPECT_EQ(found->content.graphs.size() + found->content.groups.size(), 1U);
}

TEST_F(InventoryOf, ADependencyIsFoundByAWayRelativeToTheFile)
{
    directory.write("below/b.obl", "");

    const auto found = take(aPackage().dependingOn("below/b.obl", 5));

    ASSERT_EQ(found->dependencies.size(), 1U);
    EXPECT_EQ(found->dependencies[0].named.filename, "below/b.obl");
    EXPECT_EQ(found->dependencies[0].path, path("below/b.obl"));
    EXPECT_EQ(found->dependencies[0].way, DependencyWay::Relative);
    EXPECT_TRUE(found->dependencies[0].isFound);
}

TEST_F(InventoryOf, ADependencyMayHaveAnAbsolutePath)
{
    directory.write("b.obl", "");

    const auto found = take(aPackage().dependingOn(path("b.obl").toStdString(), 5));

    EXPECT_EQ(found->dependencies[0].path, path("b.obl"));
    EXPECT_EQ(found->dependencies[0].way, DependencyWay::Absolute);
    EXPECT_EQ(wordOf(found->dependencies[0].way), "absolute");
}

TEST_F(InventoryOf, ADependencyIsRelativeToWhereTheFileReallyLies)
{
    directory.write("real/b.obl", "");
    directory.write("real/a.obl", aPackage().dependingOn("b.obl", 5).text());
    directory.makeLink("link.obl", "real/a.obl");

    const auto found = takeInventory(path("link.obl"), {}, reason);

    EXPECT_EQ(found->dependencies[0].path, path("real/b.obl"));
}

TEST_F(InventoryOf, ADependencyOfThePresetsIsLookedForThere)
{
    directory.write("presets/b.obl", "");

    const auto found = take(aPackage().dependingOn("obl://b.obl", 5), {path("presets")});

    EXPECT_EQ(found->dependencies[0].path, path("presets/b.obl"));
    EXPECT_EQ(found->dependencies[0].way, DependencyWay::Presets);
    EXPECT_TRUE(found->dependencies[0].isFound);
}

TEST_F(InventoryOf, AMissingDependencyIsToldWithThePathThatWasTried)
{
    const auto found = take(aPackage().dependingOn("/nowhere/b.obl", 5));

    EXPECT_EQ(found->dependencies[0].path, "/nowhere/b.obl");
    EXPECT_EQ(found->dependencies[0].way, DependencyWay::Absolute);
    EXPECT_FALSE(found->dependencies[0].isFound);
}

TEST_F(InventoryOf, ThePackageItselfIsADependencyThatIsFound)
{
    const auto found = take(aPackage().dependingOnItself(5));

    EXPECT_EQ(found->dependencies[0].path, path("a.obl"));
    EXPECT_EQ(found->dependencies[0].way, DependencyWay::Itself);
    EXPECT_TRUE(found->dependencies[0].isFound);
}

TEST_F(InventoryOf, AResourceHasTheSizeOfItsFile)
{
    directory.write("x.png", "1234");

    const auto found = take(aPackage().containing(aResource("r", "x.png")));

    EXPECT_EQ(found->content.resources[0].path, path("x.png"));
    EXPECT_TRUE(found->content.resources[0].isFound);
    EXPECT_EQ(found->content.resources[0].size, 4);
}

TEST_F(InventoryOf, AnOldPackageHasItsOwnVersionAndTheUpdatesThatItNeeds)
{
    const auto found = takeExample("old/market_square.obl");

    ASSERT_TRUE(found) << reason.toStdString();
    EXPECT_EQ(found->head.formatVersion, "1.1.0.6141");
    EXPECT_EQ(found->updates, QStringList("1.1.0.7049"));
}

TEST_F(InventoryOf, AnOldPackageHasNoDependencyThatAnUpdateWouldAdd)
{
    const auto found = takeExample("old/pavement.obl");

    ASSERT_TRUE(found) << reason.toStdString();
    EXPECT_TRUE(found->dependencies.empty());
}

TEST_F(InventoryOf, APackageThatIsTooNewIsRefused)
{
    EXPECT_FALSE(take(aPackage().with("formatVersion", "9.0.0.0").without("updaterVersion")));
    EXPECT_EQ(reason, "a newer version of the format made it");
}

TEST_F(InventoryOf, APackageWithoutARequiredMemberIsRefused)
{
    EXPECT_FALSE(take(aPackage().without("author")));
    EXPECT_TRUE(reason.startsWith("it is no sound document: ")) << reason.toStdString();
}

TEST(TypeNames, AreWordsForTheTypesOfTheTable)
{
    EXPECT_EQ(nameOfType(1), "color");
    EXPECT_EQ(nameOfType(2), "grayscale");
    EXPECT_EQ(nameOfType(3), "image");
    EXPECT_EQ(nameOfType(4), "bool");
    EXPECT_EQ(nameOfType(128), "int4");
    EXPECT_EQ(nameOfType(2048), "float4");
    EXPECT_EQ(nameOfType(32768), "string");
}

TEST(TypeNames, AreTheNumbersOfAllOthers)
{
    EXPECT_EQ(nameOfType(0), "0");
    EXPECT_EQ(nameOfType(8), "8");
}
