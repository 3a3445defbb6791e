#include "ksx/kit/pictures.h"

#include "data/filename.h"
#include "support/packagetext.h"
#include "support/temporarydirectory.h"
#include "support/workspace.h"
#include <gtest/gtest.h>

using Ksx::Kit::Picture;
using Ksx::Kit::PictureChoice;
using TestSupport::aGroup;
using TestSupport::aNode;
using TestSupport::aPackage;
using TestSupport::GraphText;
using TestSupport::PackageText;
using TestSupport::TemporaryDirectory;

namespace {

std::string aGraph(const std::string& identifier, const std::string& nodes = {})
{
    GraphText graph;
    graph.identifier = identifier;
    graph.nodes = nodes;
    return graph.text();
}

std::string anInstanceOf(const std::string& path)
{
    return aNode(1, "<compInstance><path><value v=\"" + path +
                        "\"/></path><parameters/><outputBridgings/></compInstance>");
}

class Pictures : public testing::Test
{
protected:
    // Returns whether all were drawn.
    bool draw(const PackageText& package, const PictureChoice& choice = {})
    {
        return Ksx::Kit::drawPackage(
            Orv::fromBytes(directory.write("a.obl", package.text())), {}, choice,
            [this](const Picture& picture) {
                pictures.push_back(picture);
                return true;
            },
            reason);
    }
    std::vector<std::string> names() const
    {
        std::vector<std::string> all;
        for (const Picture& picture : pictures)
            all.push_back(picture.name.toStdString());
        return all;
    }

    TemporaryDirectory directory;
    std::vector<Picture> pictures;
    QString reason;
};

using Names = std::vector<std::string>;

} // namespace

TEST_F(Pictures, AreNamedByTheirPaths)
{
    EXPECT_TRUE(draw(aPackage().containing(aGroup("species", aGraph("oak")) + aGraph("planks"))));

    EXPECT_EQ(names(), (Names{"species.oak", "planks"}));
    EXPECT_EQ(pictures[0].place, "pkg://species/oak");
    EXPECT_EQ(pictures[0].drawing.caption, "species/oak");
}

TEST_F(Pictures, HaveNamesThatNoFileSystemTakesForOne)
{
    EXPECT_TRUE(draw(aPackage().containing(aGraph("oak") + aGraph("oak") + aGraph("OAK") +
                                           aGraph("../../etc"))));

    EXPECT_EQ(names(), (Names{"oak", "oak-2", "OAK-3", "_.....etc"}));
}

TEST_F(Pictures, OfOneGraphAreChosenByItsPath)
{
    const PackageText package =
        aPackage().containing(aGroup("species", aGraph("oak")) + aGraph("oak"));

    EXPECT_TRUE(draw(package, {"species/oak"}));
    EXPECT_TRUE(draw(package, {"pkg://oak"}));

    EXPECT_EQ(names(), (Names{"species.oak", "oak"}));
}

TEST_F(Pictures, LinkInstancesToThePicturesOfTheirGraphs)
{
    EXPECT_TRUE(draw(aPackage().dependingOnItself(5).containing(
        aGroup("species", aGraph("oak")) +
        aGraph("planks", anInstanceOf("pkg://species/oak?dependency=5")))));

    EXPECT_EQ(pictures.at(1).drawing.boxes.at(0).link, "species.oak.svg");
}

TEST_F(Pictures, LinkNothingToGraphsOfOtherPackages)
{
    EXPECT_TRUE(
        draw(aPackage()
                 .dependingOn("b.obl", 6)
                 .containing(aGroup("species", aGraph("oak")) +
                             aGraph("planks", anInstanceOf("pkg://species/oak?dependency=6")))));

    EXPECT_EQ(pictures.at(1).drawing.boxes.at(0).link, "");
}

TEST_F(Pictures, EndWhenTheTakerHasEnough)
{
    const std::string file =
        directory.write("a.obl", aPackage().containing(aGraph("a") + aGraph("b")).text());
    int count = 0;

    const bool isDone = Ksx::Kit::drawPackage(
        Orv::fromBytes(file), {}, {}, [&](const Picture&) { return ++count < 1; }, reason);

    EXPECT_FALSE(isDone);
    EXPECT_EQ(count, 1);
}

TEST_F(Pictures, OfADamagedPackageAreRefusedWithAReason)
{
    EXPECT_FALSE(draw(aPackage().without("identifier")));

    EXPECT_FALSE(reason.isEmpty());
}

TEST_F(Pictures, OfTooManyGraphsAreDrawnInPart)
{
    std::string graphs;
    for (int i = 0; i < 10001; ++i)
        graphs += aGraph("g" + std::to_string(i));

    EXPECT_FALSE(draw(aPackage().containing(graphs)));

    EXPECT_EQ(pictures.size(), 10000U);
    EXPECT_EQ(reason, "it has 1 more graphs and functions than are drawn");
}
