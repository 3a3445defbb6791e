// Images that the command "specialization" connects to a filter: files of all formats, what becomes
// of them, and files that are no images.
#include "support/damage.h"
#include "support/filtertext.h"
#include "support/hostilepictures.h"
#include "support/packagechecker.h"
#include "support/packagedom.h"
#include "support/packagetext.h"
#include "support/paths.h"
#include "support/sampleimages.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <QCryptographicHash>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <regex>
#include <sys/stat.h>

using testing::MatchesRegex;
using TestSupport::aColorInput;
using TestSupport::aGrayscaleInput;
using TestSupport::aPackage;
using TestSupport::aPng;
using TestSupport::aPngWithPalette;
using TestSupport::Arguments;
using TestSupport::buildPath;
using TestSupport::caseName;
using TestSupport::countAt;
using TestSupport::dependencyUidIn;
using TestSupport::expectWhole;
using TestSupport::FilterText;
using TestSupport::HostilePicture;
using TestSupport::hostilePictures;
using TestSupport::ImageFormat;
using TestSupport::imageFormats;
using TestSupport::InputText;
using TestSupport::pick;
using TestSupport::replaced;
using TestSupport::runTool;
using TestSupport::seededRandom;
using TestSupport::sourcePath;
using TestSupport::TemporaryDirectory;
using TestSupport::textsAt;
using TestSupport::Tool;
using TestSupport::ToolRun;
using TestSupport::withFlippedBit;

namespace {

const std::string Nodes = "content/graph/compNodes/compNode/";
const std::string Filter = Nodes + "compImplementation/compFilter/";
const std::string Parameter = Filter + "parameters/parameter/";
const std::string Resource = "content/resource/";

// The command, and a filter that takes the images "in", "mask" and "any".
class ConnectedImages : public testing::Test
{
protected:
    ConnectedImages()
    {
        directory.write("f.obl", aPackage()
                                     .named("wood")
                                     .containing(FilterText("planks")
                                                     .taking(aColorInput("in"))
                                                     .taking(aGrayscaleInput("mask"))
                                                     .taking(InputText("any", 3))
                                                     .text())
                                     .text());
    }
    ToolRun connect(const Arguments& images, const Arguments& others = {}) const
    {
        return runTool(directory.path(), argumentsFor(images, others));
    }
    static Arguments argumentsFor(const Arguments& images, const Arguments& others = {})
    {
        Arguments arguments{"specialization", "f.obl"};
        for (const std::string& image : images)
            arguments.insert(arguments.end(), {"--connect-image", image});
        arguments.insert(arguments.end(), others.begin(), others.end());
        return arguments;
    }
    // For files that the libraries for images may never come to an end with.
    ToolRun connectInTime(const std::string& file) const
    {
        Arguments arguments{"20", Tool::executable()};
        const Arguments command = argumentsFor({"in@path@" + file});
        arguments.insert(arguments.end(), command.begin(), command.end());
        return Tool(directory.path()).at("/usr/bin/timeout").run(arguments);
    }
    // What the tool writes, after it has succeeded without a word.
    std::string connected(const Arguments& images, const Arguments& others = {}) const
    {
        const ToolRun run = connect(images, others);
        EXPECT_EQ(run.exitCode, 0) << run;
        EXPECT_EQ(run.err, "");
        expectWhole(at("f_specialized.obl"));
        return directory.read("f_specialized.obl");
    }
    std::string at(const std::string& name) const { return directory.path(name); }
    void expectRefused(const ToolRun& run, const std::string& message) const
    {
        EXPECT_EQ(run.exitCode, 1) << run;
        EXPECT_EQ(run.signal, 0);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, message + "\n");
        EXPECT_FALSE(directory.exists("f_specialized.obl"));
    }
    // That the image of a file cannot be read.
    void expectNoImage(const std::string& name) const
    {
        expectRefused(connectInTime(name), "Error! Image cannot be correctly loaded: " + at(name));
    }

    TemporaryDirectory directory;
};

// What becomes of an image

TEST_F(ConnectedImages, GetTwoNodesEach)
{
    directory.write("oak.png", aPng({4, 4}));

    const std::string written = connected({"in@path@oak.png"});

    const std::string connexions = Nodes + "connexions/connexion/";
    const std::string uids = textsAt(written, Nodes + "uid");
    const std::size_t first = uids.find(' ') + 1;
    const std::size_t second = uids.find(' ', first) + 1;
    EXPECT_EQ(textsAt(written, Filter + "filter"), "bitmap transformation");
    EXPECT_EQ(textsAt(written, Nodes + "GUILayout/gpos"), "-284 0 0 -156 0 0");
    EXPECT_EQ(textsAt(written, connexions + "identifier"), "in input1");
    EXPECT_EQ(textsAt(written, connexions + "connRef/value"),
              uids.substr(second) + " " + uids.substr(first, second - first - 1));
    EXPECT_EQ(countAt(written, "content/graph/paraminputs/paraminput"), 0);
    EXPECT_EQ(countAt(written, "content/graph/primaryInput"), 0);
}

TEST_F(ConnectedImages, BecomeResources)
{
    const std::string bytes = aPng({4, 4});
    directory.write("oak.png", bytes);
    std::filesystem::last_write_time(at("oak.png"), std::filesystem::file_time_type::clock::now());

    const std::string written = connected({"in@path@oak.png"});

    const std::string md5 =
        QCryptographicHash::hash(QByteArray::fromStdString(bytes), QCryptographicHash::Md5)
            .toHex()
            .toStdString();
    EXPECT_EQ(textsAt(written, Resource + "identifier"), "oak");
    EXPECT_EQ(textsAt(written, Resource + "type"), "3");
    EXPECT_EQ(textsAt(written, Resource + "format"), "PNG");
    EXPECT_EQ(textsAt(written, Resource + "filepath"), "oak.png");
    EXPECT_EQ(textsAt(written, Resource + "checksum"), md5);
    EXPECT_THAT(textsAt(written, Resource + "lastModif"),
                MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}"));
    EXPECT_EQ(textsAt(written, Parameter + "name").substr(0, 29), "bitmapresourcepath outputsize");
    EXPECT_EQ(textsAt(written, Parameter + "paramValue/constantValueString/value"),
              "pkg://oak?dependency=" + std::to_string(dependencyUidIn(written, "?himself")));
}

TEST_F(ConnectedImages, StandInTheOrderOfTheirInputs)
{
    directory.write("a.png", aPng({4, 4}));
    directory.write("b.png", aPng({8, 8}));
    directory.write("c.png", aPng({16, 16}));

    const std::string written = connected({"mask@path@a.png", "in@path@b.png", "any@path@c.png"});

    EXPECT_EQ(textsAt(written, Resource + "identifier"), "c b a");
    EXPECT_EQ(textsAt(written, Nodes + "GUILayout/gpos"),
              "-284 0 0 -156 0 0 -284 128 0 -156 128 0 -284 256 0 -156 256 0");
    EXPECT_EQ(textsAt(written, Nodes + "connexions/connexion/identifier"),
              "any in mask input1 input1 input1");
    EXPECT_EQ(textsAt(written, Parameter + "paramValue/constantValueInt2/value"), "4 4 3 3 2 2");
    EXPECT_EQ(textsAt(written, "dependencies/dependency/filename"), "f.obl ?himself");
}

TEST_F(ConnectedImages, StandBeforeTheInputs)
{
    directory.write("a.png", aPng({4, 4}));

    const std::string written = connected({"in@path@a.png"}, {"--connect-input", "mask"});

    EXPECT_EQ(textsAt(written, Nodes + "GUILayout/gpos"), "-284 0 0 -156 0 0 -156 128 0");
}

TEST_F(ConnectedImages, GiveWayToAnInput)
{
    directory.write("a.png", aPng({4, 4}));

    const std::string written = connected({"in@path@a.png"}, {"--connect-input", "in"});

    const std::string uids = textsAt(written, Nodes + "uid");
    const std::string sources = textsAt(written, Nodes + "connexions/connexion/connRef/value");
    EXPECT_EQ(textsAt(written, Nodes + "connexions/connexion/identifier"), "in input1");
    EXPECT_EQ(sources.substr(0, sources.find(' ')), uids.substr(uids.rfind(' ') + 1));
}

TEST_F(ConnectedImages, AreSkippedWithoutAPath)
{
    directory.write("a.png", aPng({4, 4}));

    const ToolRun run = connect({"any@format@PNG", "in@path@a.png", "none@level@1"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.out, "Package Saved: " + at("f_specialized.obl") + "\n");
    EXPECT_EQ(run.err, "Image \"any\" has not a file path specified\n"
                       "Image \"none\" has not a file path specified\n");
    const std::string written = directory.read("f_specialized.obl");
    EXPECT_EQ(textsAt(written, Resource + "identifier"), "a");
    EXPECT_EQ(textsAt(written, Nodes + "GUILayout/gpos"), "-284 0 0 -156 0 0");
    expectWhole(at("f_specialized.obl"));
}

TEST_F(ConnectedImages, AreSkippedWithAnEmptyPath)
{
    const ToolRun run = connect({"in@path@"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(run.err, "Image \"in\" has not a file path specified\n");
}

TEST_F(ConnectedImages, TakeTheParametersOfSeveralOptions)
{
    directory.write("a.png", aPng({4, 4}));
    directory.write("b.png", aPng({4, 4}));

    const std::string written =
        connected({"in@path@a.png@format@RAW", "in@format@JPEG@level@0.25", "in@path@b.png"});

    EXPECT_EQ(textsAt(written, Resource + "identifier"), "b");
    EXPECT_EQ(textsAt(written, Resource + "cookedFormat"), "4");
    EXPECT_EQ(textsAt(written, Resource + "cookedQuality"), "0.25");
    EXPECT_EQ(countAt(written, Filter + "filter"), 2);
}

TEST_F(ConnectedImages, AreOfGreysForAGrayscaleInput)
{
    directory.write("a.png", aPng({4, 4}));

    const std::string written = connected({"mask@path@a.png"});

    EXPECT_EQ(textsAt(written, Parameter + "name"),
              "bitmapresourcepath outputsize colorswitch tiling");
    EXPECT_EQ(textsAt(written, Parameter + "paramValue/constantValueBool/value"), "0");
}

TEST_F(ConnectedImages, AreOfColoursForOthers)
{
    directory.write("a.png", aPng({4, 4}));

    const std::string written = connected({"in@path@a.png", "any@path@a.png"});

    EXPECT_EQ(textsAt(written, Parameter + "name"),
              "bitmapresourcepath outputsize tiling bitmapresourcepath outputsize tiling");
    EXPECT_EQ(textsAt(written, Nodes + "compOutputs/compOutput/comptype/value"), "1 1 1 1");
}

// The nodes say what they give: a grayscale image, and the input takes no other.
TEST_F(ConnectedImages, TellThatTheyAreOfGreys)
{
    directory.write("a.png", aPng({4, 4}));

    const std::string written = connected({"mask@path@a.png"});

    EXPECT_EQ(textsAt(written, Nodes + "compOutputs/compOutput/comptype/value"), "2 2");
}

struct CookingCase
{
    const char* name;
    const char* option;
    const char* format;
    const char* quality;
    const char* tiling; // of the node that fits the image
};

class CookedImage : public ConnectedImages, public testing::WithParamInterface<CookingCase>
{};

TEST_P(CookedImage, IsAsTheOptionSays)
{
    directory.write("a.png", aPng({4, 4}));

    const std::string written = connected({std::string("in@path@a.png") + GetParam().option});

    EXPECT_EQ(textsAt(written, Resource + "cookedFormat"), GetParam().format);
    EXPECT_EQ(textsAt(written, Resource + "cookedQuality"), GetParam().quality);
    EXPECT_EQ(textsAt(written, Parameter + "paramValue/constantValueInt32/value"),
              GetParam().tiling);
}

// Zero stands for itself where nothing is written.
INSTANTIATE_TEST_SUITE_P(
    All, CookedImage,
    testing::Values(CookingCase{"Default", "", "", "", "0"},
                    CookingCase{"Raw", "@format@RAW", "", "", "0"},
                    CookingCase{"Jpeg", "@format@JPEG", "4", "", "0"},
                    CookingCase{"NoFormat", "@format@", "", "", "0"},
                    CookingCase{"LastFormat", "@format@JPEG@format@RAW", "", "", "0"},
                    CookingCase{"Level", "@level@0.75", "", "0.75", "0"},
                    CookingCase{"LevelBeyondOne", "@level@-12", "", "-12", "0"},
                    CookingCase{"NoLevel", "@level@high", "", "", "0"},
                    CookingCase{"LevelThatIsNotANumber", "@level@nan", "", "", "0"},
                    CookingCase{"InfiniteLevel", "@level@inf", "", "", "0"},
                    CookingCase{"LevelBeyondAllFloats", "@level@1e39", "", "", "0"},
                    CookingCase{"LevelWithAComma", "@level@0,5", "", "", "0"},
                    CookingCase{"Tiling", "@tiling@1", "", "", ""},
                    CookingCase{"MuchTiling", "@tiling@-2", "", "", ""},
                    CookingCase{"NoTiling", "@tiling@0", "", "", "0"},
                    CookingCase{"TilingInWords", "@tiling@yes", "", "", "0"},
                    CookingCase{"All", "@format@JPEG@level@0.5@tiling@1", "4", "0.5", ""}),
    caseName<CookingCase>);

// Names and places of files

struct FileCase
{
    const char* name;
    const char* file;
    const char* identifier;
    const char* format;
};

class ImageFile : public ConnectedImages, public testing::WithParamInterface<FileCase>
{};

TEST_P(ImageFile, GivesItsNameToTheResource)
{
    directory.write(GetParam().file, aPng({4, 4}));

    const std::string written = connected({std::string("in@path@") + GetParam().file});

    EXPECT_EQ(textsAt(written, Resource + "identifier"), GetParam().identifier);
    EXPECT_EQ(textsAt(written, Resource + "format"), GetParam().format);
    EXPECT_EQ(textsAt(written, Resource + "filepath"), GetParam().file);
}

INSTANTIATE_TEST_SUITE_P(
    Names, ImageFile,
    testing::Values(FileCase{"Capitals", "OAK.Png", "OAK", "PNG"},
                    FileCase{"InADirectory", "sub/deep/oak.png", "oak", "PNG"},
                    FileCase{"WithoutAnEnding", "oak", "oak", ""},
                    FileCase{"WithTwoEndings", "oak.old.png", "oak", "PNG"},
                    FileCase{"OfAnotherEnding", "oak.jpg", "oak", "JPG"},
                    FileCase{"OfAnUnknownEnding", "oak.wood", "oak", "WOOD"},
                    FileCase{"WithBlanks", "old oak.png", "old_oak", "PNG"},
                    FileCase{"WithBytes", "\xc3\xb6l & <\"1\">.png", "l_____1", "PNG"},
                    FileCase{"OfTheGraph", "planks.png", "planks_1", "PNG"},
                    FileCase{"Nothing", ".png", "DEFAULT_NEW_RESOURCE_IDENTIFIER", "PNG"},
                    FileCase{"NothingLegal", "___.png", "DEFAULT_NEW_RESOURCE_IDENTIFIER", "PNG"}),
    caseName<FileCase>);

TEST_F(ConnectedImages, OfOneNameGetNamesOfTheirOwn)
{
    directory.write("oak.png", aPng({4, 4}));
    directory.write("sub/oak.png", aPng({4, 4}));

    const std::string written = connected({"any@path@oak.png", "in@path@sub/oak.png"});

    EXPECT_EQ(textsAt(written, Resource + "identifier"), "oak oak_1");
    EXPECT_EQ(textsAt(written, Resource + "filepath"), "oak.png sub/oak.png");
}

TEST_F(ConnectedImages, MayBeGivenByTheirFullPath)
{
    directory.write("sub/oak.png", aPng({4, 4}));

    const std::string written = connected({"in@path@" + at("sub/oak.png")});

    EXPECT_EQ(textsAt(written, Resource + "filepath"), "sub/oak.png");
}

TEST_F(ConnectedImages, AreNamedRelativeToTheTarget)
{
    directory.write("oak.png", aPng({4, 4}));
    directory.makeDirectory("out");

    const ToolRun run = connect({"in@path@./oak.png"}, {"--output-path", "out"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(textsAt(directory.read("out/f_specialized.obl"), Resource + "filepath"),
              "../oak.png");
    expectWhole(at("out/f_specialized.obl"));
}

TEST_F(ConnectedImages, OfThePresetsAreNamedByTheirScheme)
{
    directory.write("presets/oak.png", aPng({4, 4}));

    const ToolRun run = connect({"in@path@presets/oak.png"}, {"--presets-path", "presets"});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(textsAt(directory.read("f_specialized.obl"), Resource + "filepath"), "obl://oak.png");
    expectWhole(at("f_specialized.obl"), at("presets"));
}

TEST_F(ConnectedImages, AreNamedByTheLinkThatLeadsToThem)
{
    directory.write("else/real.png", aPng({4, 4}));
    directory.makeLink("oak.png", "else/real.png");

    const std::string written = connected({"in@path@oak.png"});

    EXPECT_EQ(textsAt(written, Resource + "filepath"), "oak.png");
}

TEST_F(ConnectedImages, AreAddedToAPackage)
{
    directory.write("oak.png", aPng({4, 4}));

    connected({"in@path@oak.png"});
    const std::string written = connected({"in@path@oak.png"}, {"--output-merge"});

    EXPECT_EQ(textsAt(written, "content/graph/identifier"), "planks planks_1");
    EXPECT_EQ(textsAt(written, Resource + "identifier"), "oak oak_1");
    EXPECT_EQ(textsAt(written, "dependencies/dependency/filename"), "f.obl ?himself");
}

// Formats

class ImagesOfAFormat : public ConnectedImages, public testing::WithParamInterface<ImageFormat>
{
protected:
    std::string write(const std::string& name, const std::string& bytes) const
    {
        std::string file = name + "." + GetParam().ending;
        directory.write(file, bytes);
        return file;
    }
    std::string image(TestSupport::ImageSize size) const { return GetParam().bytes(size); }
};

TEST_P(ImagesOfAFormat, GiveTheirSizeToTheirNode)
{
    const std::string point = write("point", image({1, 1}));
    const std::string picture = write("picture", image({300, 200}));
    const std::string line = write("line", image({8192, 1}));

    const std::string written =
        connected({"any@path@" + point, "in@path@" + picture, "mask@path@" + line});

    std::string ending = GetParam().ending;
    for (char& letter : ending)
        letter = static_cast<char>(std::toupper(letter));
    EXPECT_EQ(textsAt(written, Resource + "format"), ending + " " + ending + " " + ending);
    EXPECT_EQ(textsAt(written, Parameter + "paramValue/constantValueInt2/value"), "0 0 9 8 13 0");
}

TEST_P(ImagesOfAFormat, AreRefusedWhenTheyAreCutOff)
{
    const std::string bytes = image({64, 48});
    write("a", bytes.substr(0, bytes.size() / 2));

    expectNoImage(std::string("a.") + GetParam().ending);
}

TEST_P(ImagesOfAFormat, AreRefusedWithoutTheirLastBytes)
{
    const std::string bytes = image({64, 48});
    const std::size_t end = std::max<std::size_t>(bytes.size() / 16, 32); // some is not needed
    write("a", bytes.substr(0, bytes.size() - end));

    expectNoImage(std::string("a.") + GetParam().ending);
}

TEST_P(ImagesOfAFormat, AreRefusedWhenTheyEndAtOnce)
{
    write("a", image({64, 48}).substr(0, 12));

    expectNoImage(std::string("a.") + GetParam().ending);
}

TEST_P(ImagesOfAFormat, AreRefusedWithADamagedHeader)
{
    std::string bytes = image({64, 48});
    for (std::size_t i = 0; i < 18; ++i)
        bytes[i] = static_cast<char>(~bytes[i]);
    write("a", bytes);

    expectNoImage(std::string("a.") + GetParam().ending);
}

TEST_P(ImagesOfAFormat, MayNotBeText)
{
    write("a", "Oak, elm and ash;\nsome of them old.\n");

    expectNoImage(std::string("a.") + GetParam().ending);
}

TEST_P(ImagesOfAFormat, MayNotBeEmpty)
{
    write("a", "");

    expectNoImage(std::string("a.") + GetParam().ending);
}

// Whatever it makes of such a file, it ends in order and says no more than the one line.
TEST_P(ImagesOfAFormat, WithWrongBitsAreReadOrRefused)
{
    const std::string bytes = image({16, 16});
    const std::size_t header = std::min<std::size_t>(bytes.size(), 400) * 8 - 1;
    auto random = seededRandom(20261121);
    for (int i = 0; i < 6; ++i) {
        const std::string file =
            write("a", withFlippedBit(bytes, pick(random, std::size_t{0}, header)));
        const ToolRun run = connectInTime(file);
        EXPECT_TRUE(run.exitCode == 0 || run.exitCode == 1) << run;
        EXPECT_EQ(run.err, run.exitCode == 0
                               ? ""
                               : "Error! Image cannot be correctly loaded: " + at(file) + "\n");
    }
}

INSTANTIATE_TEST_SUITE_P(All, ImagesOfAFormat, testing::ValuesIn(imageFormats()),
                         caseName<ImageFormat>);

struct SizeCase
{
    const char* name;
    TestSupport::ImageSize size;
    const char* exponents;
};

class ImageOfASize : public ConnectedImages, public testing::WithParamInterface<SizeCase>
{};

TEST_P(ImageOfASize, HasAPowerOfTwoThatIsNotBelow)
{
    directory.write("a.png", aPng(GetParam().size));

    const std::string written = connected({"in@path@a.png"});

    EXPECT_EQ(textsAt(written, Parameter + "paramValue/constantValueInt2/value"),
              GetParam().exponents);
}

INSTANTIATE_TEST_SUITE_P(Sizes, ImageOfASize,
                         testing::Values(SizeCase{"Point", {1, 1}, "0 0"},
                                         SizeCase{"Two", {2, 3}, "1 2"},
                                         SizeCase{"Power", {256, 512}, "8 9"},
                                         SizeCase{"OneBelow", {255, 511}, "8 9"},
                                         SizeCase{"OneAbove", {257, 513}, "9 10"},
                                         SizeCase{"HighLine", {1, 9000}, "0 14"}),
                         caseName<SizeCase>);

// Files that are no images

TEST_F(ConnectedImages, HaveToBeThere)
{
    expectRefused(connect({"in@path@sub/../oak.png"}),
                  "Error! Image cannot be loaded: sub/../oak.png");
}

TEST_F(ConnectedImages, MayNotBeALinkToNothing)
{
    directory.makeLink("oak.png", "gone.png");

    expectRefused(connect({"in@path@oak.png"}), "Error! Image cannot be loaded: oak.png");
}

TEST_F(ConnectedImages, MayNotBeADirectory)
{
    directory.makeDirectory("oak.png");

    expectRefused(connect({"in@path@oak.png"}), "Error! Image cannot be loaded: oak.png");
}

TEST_F(ConnectedImages, HaveToBeReadable)
{
    directory.write("oak.png", aPng({4, 4}));
    directory.setMode("oak.png", 0);
    directory.setMode(".", 0777);

    const ToolRun run =
        Tool(directory.path()).withoutRootRights().run(argumentsFor({"in@path@oak.png"}));

    expectRefused(run, "Error! Image cannot be loaded: oak.png");
}

TEST_F(ConnectedImages, MayNotBeADevice)
{
    expectRefused(connect({"in@path@/dev/null"}), "Error! Image cannot be loaded: /dev/null");
}

TEST_F(ConnectedImages, MayNotBeAPackage)
{
    expectNoImage("f.obl");
}

// A few bytes that announce gigabytes of pixels.
TEST_F(ConnectedImages, MayNotBeLargerThanTheirFile)
{
    std::string bytes = aPng({4, 4});
    bytes = replaced(bytes, std::string("IHDR\0\0\0\4\0\0\0\4", 12),
                     std::string("IHDR\0\1\x86\xa0\0\1\x86\xa0", 12));
    directory.write("a.png", bytes);

    expectNoImage("a.png");
}

TEST_F(ConnectedImages, ABadOneLeavesAFormerResult)
{
    directory.write("a.png", "text");
    directory.write("f_specialized.obl", "former");

    const ToolRun run = connect({"in@path@a.png"});

    EXPECT_EQ(run.exitCode, 1) << run;
    EXPECT_EQ(directory.read("f_specialized.obl"), "former");
    EXPECT_EQ(directory.files(), "a.png f.obl f_specialized.obl");
}

TEST_F(ConnectedImages, ABadOneIsToldBehindGoodOnes)
{
    directory.write("a.png", aPng({4, 4}));
    directory.write("b.png", "text");

    expectRefused(connect({"any@path@a.png", "in@path@b.png", "mask@path@gone.png"}),
                  "Error! Image cannot be correctly loaded: " + at("b.png"));
}

class HostileImage : public ConnectedImages, public testing::WithParamInterface<HostilePicture>
{};

// Twenty seconds are the patience of the test, and two gigabytes the bound of the decoder.
TEST_P(HostileImage, IsRefusedInTimeAndWithinBounds)
{
    const std::string name = std::string("a.") + GetParam().ending;
    directory.write(name, GetParam().bytes());

    const ToolRun run = connectInTime(name);

    expectRefused(run, "Error! Image cannot be correctly loaded: " + at(name));
    EXPECT_LT(run.peakKilobytes, 2 << 20);
}

INSTANTIATE_TEST_SUITE_P(All, HostileImage, testing::ValuesIn(hostilePictures()),
                         caseName<HostilePicture>);

// The rest of the file would be read pixel by pixel.
TEST_F(ConnectedImages, AreRefusedCutOffWithoutASearchForTheRest)
{
    directory.write("a.ppm", "P6\n4000 4000\n255\n" + std::string(24000000, '\x80'));

    expectNoImage("a.ppm");
}

TEST_F(ConnectedImages, MayHaveAtMost67108864Pixels)
{
    directory.write("a.png", aPngWithPalette({8192, 8193}));
    expectNoImage("a.png");

    directory.write("a.png", aPngWithPalette({8192, 8192}));
    EXPECT_EQ(
        textsAt(connected({"in@path@a.png"}), Parameter + "paramValue/constantValueInt2/value"),
        "13 13");
}

TEST_F(ConnectedImages, MayNotBeAPipe)
{
    ASSERT_EQ(mkfifo(at("a.png").c_str(), 0600), 0);

    expectRefused(connectInTime("a.png"), "Error! Image cannot be loaded: a.png");
}

// A file without an end that says that it is empty.
TEST_F(ConnectedImages, MayNotBeAFileThatTheKernelMakesUp)
{
    expectRefused(connectInTime("/proc/self/pagemap"),
                  "Error! Image cannot be loaded: /proc/self/pagemap");
}

TEST_F(ConnectedImages, OfAFormatWithoutAMarkAreKnownByTheirEnding)
{
    std::filesystem::copy(sourcePath("tests/data/pictures/wbmp-netpbm.wbmp"), at("a.wbmp"));

    EXPECT_EQ(
        textsAt(connected({"in@path@a.wbmp"}), Parameter + "paramValue/constantValueInt2/value"),
        "4 4");
}

TEST_F(ConnectedImages, NeedTheDecoder)
{
    directory.write("a.png", aPng({4, 4}));
    std::filesystem::copy(Tool::executable(), at("kestrix"));

    const ToolRun run =
        Tool(directory.path()).at(at("kestrix")).run(argumentsFor({"in@path@a.png"}));

    expectRefused(run, "Error! Image cannot be correctly loaded: " + at("a.png") +
                           "\nError! Program is missing: " + at("kestrix-decode"));
}

// Copies of tool and decoder, with plug-ins around them that say when they are loaded.
class ImagePlugins : public ConnectedImages
{
protected:
    ImagePlugins()
    {
        directory.makeDirectory("bin");
        std::filesystem::copy(Tool::executable(), at("bin/kestrix"));
        const auto decoder = std::filesystem::path(Tool::executable()).replace_filename(Decoder);
        std::filesystem::copy(decoder, at("bin/" + Decoder));
        directory.write("a.png", aPng({4, 4}));
    }
    // Connects an image while there is a plug-in in a folder below "bin".
    ToolRun connectBeside(const std::string& folder)
    {
        plugin = "bin/" + folder + "/mark.so";
        directory.makeDirectory("bin/" + folder);
        std::filesystem::copy(buildPath("kestrix_markplugin.so"), at(plugin));
        return Tool(directory.path()).at(at("bin/kestrix")).run(argumentsFor({"in@path@a.png"}));
    }
    bool isLoaded() const { return directory.exists(plugin + ".loaded"); }

    const std::string Decoder = "kestrix-decode";
    std::string plugin;
};

TEST_F(ImagePlugins, InTheFolderForPlugInsAreLoaded)
{
    const ToolRun run = connectBeside("plugins/imageformats");

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_TRUE(isLoaded());
}

TEST_F(ImagePlugins, WhereQtWouldLookAreNotLoaded)
{
    const ToolRun run = connectBeside("imageformats");

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_FALSE(isLoaded());
}

} // namespace
