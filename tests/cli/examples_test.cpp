// The sample packages go through the tool as they are.
#include "support/packagechecker.h"
#include "support/packagetext.h"
#include "support/paths.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <gtest/gtest.h>

using TestSupport::Arguments;
using TestSupport::expectWhole;
using TestSupport::runTool;
using TestSupport::TemporaryDirectory;
using TestSupport::ToolRun;
using TestSupport::withDependencyUidsHidden;

namespace {

const std::vector<std::string> Samples{
    "bricks/brick_wall", "effects/surface_rust", "fabrics/woven_fabric",    "large/city_facade",
    "mixed/everything",  "noises/noises",        "presets/presets_library", "wood/wood_planks"};

// A copy of the samples, updated twice: "x.obl" into "x_updated.obl" into "x_updated_updated.obl".
class UpdatedSamples : public testing::TestWithParam<std::string>
{
protected:
    static void SetUpTestSuite()
    {
        directory = std::make_unique<TemporaryDirectory>();
        std::filesystem::copy(TestSupport::sourcePath("examples"), directory->path(),
                              std::filesystem::copy_options::recursive);
        first = update(".obl");
        second = update("_updated.obl");
    }
    static void TearDownTestSuite() { directory.reset(); }
    static ToolRun update(const std::string& ending)
    {
        Arguments arguments{"update", "--presets-path", "presets", "--output-path", "{inputPath}"};
        for (const std::string& sample : Samples)
            arguments.push_back(sample + ending);
        return runTool(directory->path(), arguments);
    }

    static std::unique_ptr<TemporaryDirectory> directory;
    static ToolRun first;
    static ToolRun second;
};

std::unique_ptr<TemporaryDirectory> UpdatedSamples::directory;
ToolRun UpdatedSamples::first;
ToolRun UpdatedSamples::second;

TEST_P(UpdatedSamples, AreTheSamplesThemselvesButForUids)
{
    ASSERT_EQ(first.exitCode, 0) << first;

    const std::string written = directory->read(GetParam() + "_updated.obl");

    EXPECT_TRUE(withDependencyUidsHidden(written) ==
                withDependencyUidsHidden(directory->read(GetParam() + ".obl")));
}

TEST_P(UpdatedSamples, AreTheSameAfterASecondUpdate)
{
    ASSERT_EQ(second.exitCode, 0) << second;

    const std::string written = directory->read(GetParam() + "_updated_updated.obl");

    EXPECT_TRUE(withDependencyUidsHidden(written) ==
                withDependencyUidsHidden(directory->read(GetParam() + "_updated.obl")));
}

TEST_P(UpdatedSamples, AreWhole)
{
    ASSERT_EQ(first.exitCode, 0) << first;

    expectWhole(directory->path(GetParam() + "_updated.obl"), directory->path("presets"));
}

INSTANTIATE_TEST_SUITE_P(All, UpdatedSamples, testing::ValuesIn(Samples),
                         [](const testing::TestParamInfo<std::string>& sample) {
                             return sample.param.substr(sample.param.find('/') + 1);
                         });

} // namespace
