// Running the command "specialization" in tests.
#pragma once

#include "support/filtertext.h"
#include "support/packagechecker.h"
#include "support/packagetext.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <gtest/gtest.h>

namespace TestSupport {

// Where the nodes of the new graphs are, and the instance of the filter among them.
inline const std::string Nodes = "content/graph/compNodes/compNode/";
inline const std::string Instance = Nodes + "compImplementation/compInstance/";

// A filter in "f.obl" becomes a package in "f_specialized.obl".
class SpecializationCommand : public testing::Test
{
protected:
    ToolRun specialize(const Arguments& arguments) const
    {
        return specializeIn(directory.path(), arguments);
    }
    static ToolRun specializeIn(const std::string& where, Arguments arguments)
    {
        arguments.insert(arguments.begin(), "specialization");
        return runTool(where, arguments);
    }
    std::string at(const std::string& name) const { return directory.path(name); }
    void writeFilter(const FilterText& filter, const std::string& name = "f.obl") const
    {
        directory.write(name, aPackage().named("wood").containing(filter.text()).text());
    }
    void expectSaved(const ToolRun& run, const std::string& name = "f_specialized.obl") const
    {
        EXPECT_EQ(run.exitCode, 0) << run;
        EXPECT_EQ(run.out, "Package Saved: " + at(name) + "\n");
        EXPECT_EQ(run.err, "");
    }
    // What it writes of a filter.
    std::string specialized(const FilterText& filter, Arguments arguments = {}) const
    {
        writeFilter(filter);
        arguments.insert(arguments.begin(), "f.obl");
        expectSaved(specialize(arguments));
        expectWhole(at("f_specialized.obl"));
        return directory.read("f_specialized.obl");
    }

    TemporaryDirectory directory;
};

inline FilterText aFilter(const std::string& identifier = "planks")
{
    return FilterText(identifier);
}

// A filter with one of all that the command goes by.
inline FilterText aRichFilter()
{
    return aFilter()
        .taking(aColorInput("in"))
        .taking(aGrayscaleInput("mask"))
        .taking(aFloatInput("gap").labelled("Gap").inGroup("Planks").withOption("min", "0"))
        .taking(InputText("count", 16).byDefault("Int1", "7"))
        .giving(OutputText("color").usedAs("diffuse", "RGB").ofFormat(3))
        .giving(OutputText("height").usedAs("height", "R").withMipmaps(11));
}

} // namespace TestSupport
