// The command "schema" of the built tool.
#include "support/golden.h"
#include "support/paths.h"
#include "support/shelfcases.h"
#include "support/temporarydirectory.h"
#include "support/tool.h"
#include <QJsonDocument>
#include <gtest/gtest.h>

using TestSupport::Arguments;
using TestSupport::caseName;
using TestSupport::expectGolden;
using TestSupport::ksxPath;
using TestSupport::TemporaryDirectory;
using TestSupport::Tool;
using TestSupport::ToolRun;

namespace {

struct SchemaCase
{
    const char* name;
    Arguments arguments;
    const char* golden;
};

std::ostream& operator<<(std::ostream& stream, const SchemaCase& c)
{
    return stream << c.name;
}

class SchemaOf : public testing::Test
{
protected:
    ToolRun run(const Arguments& arguments) const
    {
        return Tool(directory.path()).at(ksxPath()).run(arguments);
    }

    TemporaryDirectory directory;
};

class SchemaInForm : public SchemaOf, public testing::WithParamInterface<SchemaCase>
{};

} // namespace

TEST_P(SchemaInForm, IsThatOfTheGoldenFile)
{
    const ToolRun found = run(GetParam().arguments);

    EXPECT_EQ(found.exitCode, 0) << found.err;
    expectGolden(GetParam().golden, found.out);
}

INSTANTIATE_TEST_SUITE_P(
    All, SchemaInForm,
    testing::Values(SchemaCase{"RelaxNg", {"schema"}, "kit/package.rng"},
                    SchemaCase{"NamedRelaxNg", {"schema", "--form", "relaxng"}, "kit/package.rng"},
                    SchemaCase{"XmlSchema", {"schema", "--form", "xsd"}, "kit/package.xsd"},
                    SchemaCase{"Help", {"schema", "--help"}, "kit/help-schema.txt"}),
    caseName<SchemaCase>);

TEST_F(SchemaOf, JsonIsThatOfTheGoldenFile)
{
    const ToolRun found = run({"schema", "--json"});

    EXPECT_EQ(found.exitCode, 0) << found.err;
    expectGolden(
        "kit/schema.json",
        QJsonDocument::fromJson(QByteArray::fromStdString(found.out)).toJson().toStdString());
}

TEST_F(SchemaOf, AnotherFormIsRefused)
{
    const ToolRun found = run({"schema", "--form", "dtd"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.err, "Error! The option '--form' takes relaxng or xsd\n"
                         "See 'ksx schema --help'\n");
}

TEST_F(SchemaOf, AnOperandIsRefused)
{
    const ToolRun found = run({"schema", "a.obl"});

    EXPECT_EQ(found.exitCode, 2) << found;
    EXPECT_EQ(found.err, "Error! The command takes no operand\nSee 'ksx schema --help'\n");
}
