// The command "draw" where the system fails.
#include "support/packagetext.h"
#include "support/paths.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include "support/workspace.h"
#include <gtest/gtest.h>

using TestSupport::aPackage;
using TestSupport::GraphText;
using TestSupport::ksxPath;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;

TEST(DrawFaults, TheFormerPictureStaysWhereTheDiskIsFull)
{
    const TemporaryDirectory directory;
    directory.write("a.obl", aPackage().containing(GraphText().text()).text());
    directory.write("out/a/g.svg", "former");

    const ToolRun found = Tool(directory.path())
                              .at(ksxPath())
                              .onOneCore()
                              .withFaults("write:1:ENOSPC")
                              .run({"draw", "-o", "out", "a.obl"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.err, "Error! a.obl: out/a/g.svg cannot be written\n");
    EXPECT_EQ(directory.read("out/a/g.svg"), "former");
}
