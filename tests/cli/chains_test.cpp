// Files of every historic version go through all the steps that lead to the current one.
#include "support/golden.h"
#include "support/packagechecker.h"
#include "support/packagetext.h"
#include "support/paths.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <gtest/gtest.h>
#include <regex>

using TestSupport::Arguments;
using TestSupport::expectWhole;
using TestSupport::goldenPath;
using TestSupport::readFile;
using TestSupport::replaced;
using TestSupport::runTool;
using TestSupport::TemporaryDirectory;
using TestSupport::ToolRun;
using TestSupport::withDependencyUidsHidden;

namespace {

// The document with "@UID1@" and so on for the uids that the clock gave to dependency elements. The
// uids of the golden files are far below those.
std::string withClockUidsNumbered(std::string document)
{
    static const std::regex uid(R"re(<dependency><filename v="[^"]*"/><uid v="([0-9]{4,})"/>)re");
    std::vector<std::string> uids;
    for (std::sregex_iterator one(document.begin(), document.end(), uid), end; one != end; ++one)
        uids.push_back((*one)[1]);
    for (std::size_t i = 0; i < uids.size(); ++i)
        document = replaced(document, uids[i], "@UID" + std::to_string(i + 1) + "@");
    return document;
}

class FileOfVersion : public testing::TestWithParam<std::string>
{};

TEST_P(FileOfVersion, BecomesCurrent)
{
    const TemporaryDirectory directory;
    std::filesystem::copy(goldenPath("chains"), directory.path(),
                          std::filesystem::copy_options::recursive);

    const ToolRun run = runTool(directory.path(GetParam()),
                                {"update", "input.obl", "--presets-path", "../presets",
                                 "--output-path", ".", "--output-name", "{inputName}_out"});

    ASSERT_EQ(run.exitCode, 0) << run;
    EXPECT_EQ(withClockUidsNumbered(directory.read(GetParam() + "/input_out.obl")),
              readFile(goldenPath("chains/" + GetParam() + "/expected.obl")));
}

INSTANTIATE_TEST_SUITE_P(All, FileOfVersion,
                         testing::Values("1.0.1.3000", "1.0.1.3962", "1.0.1.4253", "1.0.1.4510",
                                         "1.0.3.4858", "1.0.3.5017", "1.1.0.5356", "1.1.0.6141"),
                         [](const testing::TestParamInfo<std::string>& version) {
                             return "V" + replaced(version.param, ".", "_");
                         });

const std::vector<std::string> OldSamples{"old/felt",     "old/grain",         "old/market_square",
                                          "old/parquet",  "old/pavement",      "old/roof_tiles",
                                          "old/speckles", "old/presets/shapes"};
const std::vector<std::string> CompiledSamples{"assemblies/rust_effect.oblasm",
                                               "assemblies/metal_filters.oblar",
                                               "assemblies/stone_filters.oblar"};

// A copy of the old and compiled samples, updated in one run and then once more.
class UpdatedOldSamples : public testing::TestWithParam<std::string>
{
protected:
    static void SetUpTestSuite()
    {
        directory = std::make_unique<TemporaryDirectory>();
        std::filesystem::copy(TestSupport::sourcePath("examples"), directory->path(),
                              std::filesystem::copy_options::recursive);
        Arguments inputs = CompiledSamples;
        Arguments results;
        for (const std::string& sample : OldSamples)
            inputs.push_back(sample + ".obl");
        for (const std::string& input : inputs)
            results.push_back(input.substr(0, input.rfind('.')) + "_updated.obl");
        first = update(inputs);
        second = update(results);
    }
    static void TearDownTestSuite() { directory.reset(); }
    static ToolRun update(const Arguments& files)
    {
        Arguments arguments{"update", "--presets-path", "old/presets", "--output-path",
                            "{inputPath}"};
        arguments.insert(arguments.end(), files.begin(), files.end());
        return runTool(directory->path(), arguments);
    }

    static std::unique_ptr<TemporaryDirectory> directory;
    static ToolRun first;
    static ToolRun second;
};

std::unique_ptr<TemporaryDirectory> UpdatedOldSamples::directory;
ToolRun UpdatedOldSamples::first;
ToolRun UpdatedOldSamples::second;

TEST_P(UpdatedOldSamples, AreTheSameAfterASecondUpdate)
{
    ASSERT_EQ(first.exitCode, 0) << first;
    ASSERT_EQ(second.exitCode, 0) << second;

    const std::string written = directory->read(GetParam() + "_updated_updated.obl");

    EXPECT_TRUE(withDependencyUidsHidden(written) ==
                withDependencyUidsHidden(directory->read(GetParam() + "_updated.obl")));
}

TEST_P(UpdatedOldSamples, AreWhole)
{
    ASSERT_EQ(first.exitCode, 0) << first;

    expectWhole(directory->path(GetParam() + "_updated.obl"), directory->path("old/presets"));
}

INSTANTIATE_TEST_SUITE_P(All, UpdatedOldSamples,
                         testing::Values("old/felt", "old/grain", "old/market_square",
                                         "old/parquet", "old/pavement", "old/roof_tiles",
                                         "old/speckles", "old/presets/shapes",
                                         "assemblies/rust_effect", "assemblies/metal_filters",
                                         "assemblies/stone_filters"),
                         [](const testing::TestParamInfo<std::string>& sample) {
                             return sample.param.substr(sample.param.rfind('/') + 1);
                         });

} // namespace
