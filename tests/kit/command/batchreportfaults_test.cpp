// The part "report" of the command "batch" where the system fails.
#include "support/packagetext.h"
#include "support/paths.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

using testing::HasSubstr;
using TestSupport::aPackage;
using TestSupport::Arguments;
using TestSupport::ksxPath;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;

namespace {

class BatchReportFaults : public testing::Test
{
protected:
    BatchReportFaults()
    {
        directory.write("lib/a.obl", aPackage().text());
        tool().run({"batch", "plan", "update", "lib", "--to", "out", "-o", "plan.json"});
        tool().run({"batch", "run", "plan.json"});
    }

    Tool tool() const
    {
        Tool tool(directory.path());
        tool.at(ksxPath()).onOneCore();
        return tool;
    }

    // Returns the number of files that are opened without a check.
    unsigned long openCount() const
    {
        tool()
            .withFaults("open:1000000")
            .withEnvironment("FAULT_COUNTS", directory.path("counts"))
            .run({"batch", "report", "plan.json"});
        std::istringstream counts(directory.read("counts"));
        std::string word;
        unsigned long number = 0;
        while (counts >> word >> number && word != "open") {
        }
        return number;
    }

    // Returns a report for which no file can be opened once the check begins.
    ToolRun reportWithoutResults(const Arguments& more) const
    {
        Arguments words = {"batch", "report", "plan.json"};
        words.insert(words.end(), more.begin(), more.end());
        return tool().withFaults("open:" + std::to_string(openCount() + 1) + "+:EIO").run(words);
    }

    TemporaryDirectory directory;
};

} // namespace

TEST_F(BatchReportFaults, TellsOfAResultThatNoCheckCanRead)
{
    const ToolRun found = reportWithoutResults({"--check"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_THAT(found.err, HasSubstr("Error! " + directory.path("out/a.obl") + ": "));
    EXPECT_THAT(found.out, HasSubstr("\n0 errors and 0 warnings in 0 packages\n"));
}

TEST_F(BatchReportFaults, HasAResultThatNoCheckCanReadAsJson)
{
    const ToolRun found = reportWithoutResults({"--check", "--json"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_THAT(found.out, HasSubstr("\"failures\":[{\"file\":\"" + directory.path("out/a.obl")));
    EXPECT_THAT(found.out, HasSubstr("\"state\":\"done\"}],"));
}
