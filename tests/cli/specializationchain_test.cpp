// What the command "specialization" writes is a filter in its turn, and an input of the other
// commands: chains of them, which begin with each of the samples.
#include "support/filtertext.h"
#include "support/packagechecker.h"
#include "support/packagedom.h"
#include "support/packagetext.h"
#include "support/paths.h"
#include "support/sampleimages.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <gtest/gtest.h>
#include <regex>

using TestSupport::aColorInput;
using TestSupport::aFloatInput;
using TestSupport::aGrayscaleInput;
using TestSupport::aPackage;
using TestSupport::aPng;
using TestSupport::Arguments;
using TestSupport::countAt;
using TestSupport::elementsText;
using TestSupport::expectWhole;
using TestSupport::FilterText;
using TestSupport::InputText;
using TestSupport::OutputText;
using TestSupport::runTool;
using TestSupport::TemporaryDirectory;
using TestSupport::textsAt;
using TestSupport::ToolRun;
using TestSupport::withUidsNumbered;

namespace {

std::string withoutUids(const std::string& text)
{
    static const std::regex uid("<(uid|output) v=\"\\d+\"/>");
    return std::regex_replace(text, uid, "");
}

// What users of a graph see of it.
std::string faceOf(const std::string& document)
{
    return withoutUids(
        elementsText(document, "content/graph/paraminputs") +
        elementsText(document, "content/graph/graphOutputs") +
        elementsText(document, "content/graph/root") +
        textsAt(document, "content/graph/compNodes/compNode/compImplementation/compOutputBridge/"
                          "connectionColorType"));
}

// Runs the tool in a directory and expects that it succeeds silently and writes a whole package.
class Chain : public testing::Test
{
protected:
    void step(const std::string& command, const std::string& input, const std::string& output,
              const Arguments& others = {}) const
    {
        Arguments arguments{command, input + ".obl", "--output-name", output};
        arguments.insert(arguments.end(), others.begin(), others.end());
        run(arguments, output);
    }
    void run(const Arguments& arguments, const std::string& output) const
    {
        const ToolRun run = runTool(directory.path(), arguments);
        EXPECT_EQ(run.exitCode, 0) << run;
        EXPECT_EQ(run.err, "");
        expectWhole(directory.path(output + ".obl"));
    }
    std::string read(const std::string& name) const { return directory.read(name + ".obl"); }

    TemporaryDirectory directory;
};

FilterText aFilter()
{
    return FilterText("planks")
        .taking(aColorInput("in"))
        .taking(aGrayscaleInput("mask"))
        .taking(aFloatInput("gap").inGroup("Planks").withOption("min", "0").withOption("max", "1"))
        .taking(InputText("count", 16).byDefault("Int1", "7"))
        .taking(InputText("nails", 4).byDefault("Bool", "1"))
        .taking(InputText("colour", 2048).byDefault("Float4", "1 0.5 0.25 0"))
        .taking(InputText("place", 512).byDefault("Float2", "0.5 0.25"))
        .taking(InputText("light", 1024).byDefault("Float3", "1 2 3"))
        .taking(InputText("size", 32).byDefault("Int2", "8 9"))
        .taking(InputText("box", 64).byDefault("Int3", "1 2 3"))
        .taking(InputText("frame", 128).byDefault("Int4", "1 2 3 4"))
        .taking(InputText("name", 32768).byDefault("String", "oak"))
        .giving(OutputText("color").usedAs("diffuse", "RGB").ofFormat(3))
        .giving(OutputText("height").usedAs("height", "R").withMipmaps(11));
}

class FilterChain : public Chain
{
protected:
    FilterChain()
    {
        directory.write("zero.obl", aPackage().named("wood").containing(aFilter().text()).text());
        directory.write("oak.png", aPng({300, 200}));
    }
};

TEST_F(FilterChain, KeepsTheFaceOfTheFilter)
{
    step("specialization", "zero", "one");
    step("specialization", "one", "two");
    step("specialization", "two", "three");

    EXPECT_EQ(faceOf(read("three")), faceOf(read("one")));
    EXPECT_EQ(textsAt(read("one"), "content/graph/paraminputs/paraminput/identifier"),
              "gap count nails colour place light size box frame name");
    EXPECT_EQ(textsAt(read("three"), "dependencies/dependency/filename"), "two.obl");
}

TEST_F(FilterChain, PassesImagesOn)
{
    const Arguments both{"--connect-input", "in", "--connect-input", "mask"};
    step("specialization", "zero", "one", both);
    step("specialization", "one", "two", both);
    step("specialization", "two", "three", both);

    EXPECT_EQ(faceOf(read("three")), faceOf(read("one")));
    EXPECT_EQ(textsAt(read("one"), "content/graph/paraminputs/paraminput/type/value").substr(0, 3),
              "1 2");
}

TEST_F(FilterChain, TakesAnImageAtItsEnd)
{
    step("specialization", "zero", "one", {"--connect-input", "mask"});
    step("specialization", "one", "two", {"--connect-image", "mask@path@oak.png"});
    step("specialization", "two", "three");

    EXPECT_EQ(textsAt(read("two"), "content/resource/filepath"), "oak.png");
    EXPECT_EQ(countAt(read("three"), "content/resource"), 0);
    EXPECT_EQ(faceOf(read("three")), faceOf(read("two")));
}

TEST_F(FilterChain, MayStayInOnePackage)
{
    step("specialization", "zero", "zero", {"--output-merge"});
    step("specialization", "zero", "zero", {"--output-merge", "--connect-input", "in"});
    step("specialization", "zero", "zero", {"--output-merge"});

    const std::string written = read("zero");
    EXPECT_EQ(textsAt(written, "content/graph/identifier"), "planks planks_1 planks_2 planks_3");
    EXPECT_EQ(textsAt(written, "dependencies/dependency/filename"), "?himself");
}

// The second run adds the graph of the first package to the package of the second.
TEST_F(FilterChain, MayGoBackAndForth)
{
    step("specialization", "zero", "one");
    step("specialization", "one", "zero", {"--output-merge"});
    step("specialization", "zero", "one", {"--output-merge"});

    expectWhole(directory.path("zero.obl"));
    EXPECT_EQ(textsAt(read("zero"), "content/graph/identifier"), "planks planks_1");
    EXPECT_EQ(textsAt(read("zero"), "dependencies/dependency/filename"), "one.obl");
    EXPECT_EQ(textsAt(read("one"), "content/graph/identifier"), "planks planks_1");
    EXPECT_EQ(textsAt(read("one"), "dependencies/dependency/filename"), "zero.obl");
}

TEST_F(FilterChain, HasNothingToUpdate)
{
    step("specialization", "zero", "one",
         {"--connect-input", "in", "--connect-image", "mask@path@oak.png"});
    run({"update", "one.obl", "--output-name", "{inputName}_updated"}, "one_updated");

    EXPECT_EQ(withUidsNumbered(read("one_updated")), withUidsNumbered(read("one")));
}

TEST_F(FilterChain, TakesOtherDefaults)
{
    step("specialization", "zero", "one");
    step("graph-parameters-editor", "one", "two",
         {"--set-default-value", "gap@0.75", "--set-default-value", "size@10,11"});
    step("specialization", "two", "three");

    const std::string defaults = "content/graph/paraminputs/paraminput/defaultValue/";
    EXPECT_EQ(textsAt(read("three"), defaults + "constantValueFloat1/value"), "0.75");
    EXPECT_EQ(textsAt(read("three"), defaults + "constantValueInt2/value"), "10 11");
    EXPECT_EQ(faceOf(read("three")), faceOf(read("two")));
}

TEST_F(FilterChain, LosesInputsThatBecomeConstants)
{
    Arguments all;
    for (const char* input :
         {"gap", "count", "nails", "colour", "place", "light", "size", "box", "frame"})
        all.insert(all.end(), {"--switch-to-constant", input});
    step("specialization", "zero", "one");
    step("graph-parameters-editor", "one", "two", all);
    step("specialization", "two", "three");

    const std::string functions =
        "content/graph/compNodes/compNode/compImplementation/compInstance/"
        "parameters/parameter/paramValue/dynamicValue/paramNodes/"
        "paramNode/function";
    EXPECT_EQ(textsAt(read("two"), "content/graph/paraminputs/paraminput/identifier"), "name");
    EXPECT_EQ(textsAt(read("two"), functions),
              "const_float1 const_int1 const_bool const_float4 const_float2 const_float3 "
              "const_int2 const_int3 const_int4");
    EXPECT_EQ(countAt(read("three"), functions), 0);
}

// Chains that begin with the samples.

struct Sample
{
    const char* file;
    std::vector<std::string> images{}; // inputs that take one
    const char* presets = "presets";
};

class SampleChain : public Chain, public testing::WithParamInterface<Sample>
{
protected:
    SampleChain()
    {
        std::filesystem::copy(TestSupport::sourcePath("examples"), directory.path(),
                              std::filesystem::copy_options::recursive);
    }
    // Like a step, with all images of the sample passed on. Presets need not be asked for where
    // nothing refers to them.
    void specialize(const std::string& input, const std::string& output) const
    {
        Arguments arguments{"specialization",   input,           "--presets-path",
                            GetParam().presets, "--output-name", output};
        for (const std::string& image : GetParam().images)
            arguments.insert(arguments.end(), {"--connect-input", image});
        const ToolRun run = runTool(directory.path(), arguments);
        EXPECT_EQ(run.exitCode, 0) << run;
        EXPECT_EQ(run.err, "");
        expectWhole(directory.path(output + ".obl"), directory.path(GetParam().presets));
    }
};

TEST_P(SampleChain, KeepsTheFaceOfTheSample)
{
    specialize(GetParam().file, "one");
    specialize("one.obl", "two");
    specialize("two.obl", "three");

    EXPECT_EQ(faceOf(read("three")), faceOf(read("one")));
}

TEST_P(SampleChain, HasNothingToUpdate)
{
    specialize(GetParam().file, "one");
    const ToolRun run = runTool(directory.path(), {"update", "one.obl", "--presets-path",
                                                   GetParam().presets, "--output-path", "."});

    EXPECT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(withUidsNumbered(read("one_updated")), withUidsNumbered(read("one")));
}

TEST_P(SampleChain, LeavesTheSampleAsItIs)
{
    const std::string sample = directory.read(GetParam().file);
    const std::string files = directory.files();

    specialize(GetParam().file, "zone");

    EXPECT_EQ(directory.read(GetParam().file), sample);
    EXPECT_EQ(directory.files(), files + " zone.obl");
}

INSTANTIATE_TEST_SUITE_P(
    All, SampleChain,
    testing::Values(
        Sample{"bricks/brick_wall.obl", {"custom_brick", "dirt_mask"}},
        Sample{"effects/surface_rust.obl", {"surface", "wear_mask"}},
        Sample{"fabrics/woven_fabric.obl", {"stain"}}, Sample{"large/city_facade.obl", {"sky"}},
        Sample{"mixed/everything.obl", {"paper"}}, Sample{"noises/noises.obl"},
        Sample{"presets/presets_library.obl", {"mask", "background", "foreground"}},
        Sample{"wood/wood_planks.obl", {"dirt"}}, Sample{"old/felt.obl", {}, "old/presets"},
        Sample{"old/grain.obl", {}, "old/presets"},
        Sample{"old/market_square.obl", {}, "old/presets"},
        Sample{"old/parquet.obl", {}, "old/presets"}, Sample{"old/pavement.obl", {}, "old/presets"},
        Sample{"old/presets/shapes.obl", {}, "old/presets"},
        Sample{"old/roof_tiles.obl", {}, "old/presets"},
        Sample{"old/speckles.obl", {}, "old/presets"}, Sample{"assemblies/metal_filters.oblar"},
        Sample{"assemblies/rust_effect.oblasm", {"source", "rust_mask"}},
        Sample{"assemblies/stone_filters.oblar"}),
    [](const testing::TestParamInfo<Sample>& sample) {
        const std::string name = sample.param.file;
        const std::size_t begin = name.rfind('/') + 1;
        return name.substr(begin, name.rfind('.') - begin);
    });

} // namespace
