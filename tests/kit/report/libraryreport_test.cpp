#include "data/filename.h"
#include "ksx/kit/report.h"
#include "support/packagetext.h"
#include "support/temporarydirectory.h"
#include "support/workspace.h"
#include <QDomDocument>
#include <gtest/gtest.h>

using Ksx::Kit::LibraryReport;
using Ksx::Kit::ReportFile;
using Ksx::Kit::ReportPage;
using TestSupport::aGraphWithInstance;
using TestSupport::aGroup;
using TestSupport::anInput;
using TestSupport::aPackage;
using TestSupport::aResource;
using TestSupport::escaped;
using TestSupport::GraphText;
using TestSupport::PackageText;
using TestSupport::TemporaryDirectory;

namespace {

const std::string Hostile = "</script><script>alert(1)</script>\"'>&";

std::string aGraph(const std::string& identifier, const std::string& input = "grain")
{
    GraphText graph;
    graph.identifier = escaped(identifier);
    graph.inputs = anInput(escaped(input), 10, 256);
    return graph.text();
}

bool contains(const QByteArray& text, const char* part)
{
    return text.contains(part);
}

class Report : public testing::Test
{
protected:
    void write(const std::string& name, const PackageText& package)
    {
        files.append(Orv::fromBytes(directory.write(name, package.text())));
    }
    ReportPage pageOf(int number) const
    {
        return LibraryReport(files, {}).pageOf(files.at(number));
    }
    QByteArray textOf(int number) const { return pageOf(number).file.text; }
    QByteArray fileOf(const QString& name) const
    {
        const LibraryReport report(files, {});
        std::vector<Ksx::Kit::ReportEntry> entries;
        for (const QString& file : files)
            entries.push_back(report.pageOf(file).entry);
        for (const ReportFile& one : LibraryReport::indexOf(entries))
            if (one.name == name)
                return one.text;
        return {};
    }

    TemporaryDirectory directory;
    QStringList files;
};

} // namespace

TEST_F(Report, APackageHasAPageThatIsNamedLikeIt)
{
    write("wood.obl", aPackage().named("planks"));

    EXPECT_EQ(pageOf(0).file.name, "packages/wood.html");
    EXPECT_EQ(pageOf(0).entry.title, "planks");
}

TEST_F(Report, PackagesOfOneNameHavePagesOfTheirOwn)
{
    write("a/wood.obl", aPackage());
    write("b/wood.obl", aPackage());
    write("b/Wood.obl", aPackage());

    EXPECT_EQ(pageOf(1).file.name, "packages/wood-2.html");
    EXPECT_EQ(pageOf(2).file.name, "packages/Wood-3.html");
}

TEST_F(Report, FileNamesOfAnyCharactersHaveSafePages)
{
    write("a#b?c%20 \xC3\xA4\"<.obl", aPackage());

    EXPECT_EQ(pageOf(0).file.name, "packages/a_b_c_20____.html");
}

TEST_F(Report, APageHasPicturesInputsDependenciesAndFindings)
{
    write("a.obl", aPackage().dependingOn("b.obl", 6).containing(aGraph("oak")));
    write("b.obl", aPackage());

    const QByteArray text = textOf(0);

    EXPECT_TRUE(contains(text, "<h2 id=\"g-oak\">"));
    EXPECT_TRUE(contains(text, "<svg "));
    EXPECT_TRUE(contains(text, "<code>grain</code></td><td>float1</td>"));
    EXPECT_TRUE(contains(text, "<a href=\"b.html\">"));
    EXPECT_TRUE(contains(text, "<code>unused-dependency</code>"));
}

TEST_F(Report, AnInstanceLinksToItsGraphInAnotherPage)
{
    write("a.obl", aPackage()
                       .dependingOn("b.obl", 6)
                       .containing(aGraphWithInstance("i", "pkg://lib/oak?dependency=6")));
    write("b.obl", aPackage().containing(aGroup("lib", aGraph("oak"))));

    EXPECT_TRUE(contains(textOf(0), "<a href=\"b.html#g-lib/oak\">"));
    EXPECT_TRUE(contains(textOf(1), "id=\"g-lib/oak\""));
}

TEST_F(Report, AnInstanceOfAPackageOutsideOfTheReportLinksNowhere)
{
    write("a.obl", aPackage()
                       .dependingOn("b.obl", 6)
                       .containing(aGraphWithInstance("i", "pkg://lib/oak?dependency=6")));
    directory.write("b.obl", aPackage().text());

    EXPECT_FALSE(contains(textOf(0), "b.html"));
}

TEST_F(Report, NothingInAPackageBecomesMarkup)
{
    write("a.obl", aPackage()
                       .named(escaped(Hostile))
                       .with("author", escaped(Hostile))
                       .with("desc", escaped(Hostile))
                       .dependingOn(escaped("javascript:alert(1)" + Hostile), 6)
                       .containing(aGraph(Hostile, Hostile) +
                                   aResource(escaped(Hostile), escaped(Hostile))));

    EXPECT_EQ(textOf(0).count("<script"), 2); // its own
    EXPECT_FALSE(contains(textOf(0), "href=\"javascript:"));
    EXPECT_EQ(fileOf("index.html").count("<script"), 2);
}

TEST_F(Report, APageIsAWellFormedDocument)
{
    write("a.obl", aPackage().containing(aGraph(Hostile, Hostile)));
    QByteArray text = textOf(0);
    // HTML leaves some elements open, which XML does not.
    text.replace("utf-8\">", "utf-8\"/>").replace("'none'\">", "'none'\"/>");
    text.replace("initial-scale=1\">", "initial-scale=1\"/>").replace("light dark\">", "/>");
    text.replace("content=\"/>", "/>").replace("report.css\">", "report.css\"/>");
    text.replace("<script defer", "<script");

    QString error;
    EXPECT_TRUE(QDomDocument().setContent(text, &error)) << error.toStdString();
}

TEST_F(Report, ObjectsOfOneNameHaveAnchorsOfTheirOwn)
{
    write("a.obl", aPackage().containing(aGraph("oak") + aGraph("oak")));

    EXPECT_EQ(textOf(0).count("id=\"g-oak\""), 1);
    EXPECT_EQ(textOf(0).count("id=\"g-oak.2\""), 1);
}

TEST_F(Report, APackageThatCannotBeReadHasAPageThatTellsWhy)
{
    files.append(Orv::fromBytes(directory.write("a.obl", "<package>")));

    const ReportPage page = pageOf(0);

    EXPECT_FALSE(page.failure.isEmpty());
    EXPECT_FALSE(page.entry.isReadable);
    EXPECT_TRUE(contains(page.file.text, "<code>unreadable-package</code>"));
    EXPECT_TRUE(contains(fileOf("index.html"), "packages/a.html"));
}

TEST_F(Report, TheUsersOfAPackageAreInTheData)
{
    write("a.obl", aPackage().named("user").dependingOn("b.obl", 6));
    write("b.obl", aPackage().named("used").dependingOnItself(5));

    EXPECT_EQ(fileOf("users.js"), "const ksxUsers = {\"b.html\":[[\"a.html\",\"user\"]]};\n");
}

TEST_F(Report, TheSearchKnowsObjectsWithTheirAnchors)
{
    write("a.obl",
          aPackage().containing(aGroup("lib", aGraph("oak") + aResource("bark", "bark.png"))));

    const QByteArray data = fileOf("library.js");

    EXPECT_TRUE(contains(data, "[\"graph\",\"lib/oak\",\"\",\"g-lib/oak\"]"));
    EXPECT_TRUE(contains(data, "[\"input\",\"lib/oak/grain\",\"\",\"g-lib/oak\"]"));
    EXPECT_TRUE(contains(data, "[\"resource\",\"lib/bark\",\"bark.png\",\"resources\"]"));
}

TEST_F(Report, AManyfoldOfInputsIsCut)
{
    GraphText graph;
    for (unsigned i = 0; i < 5000; ++i)
        graph.inputs += anInput("i" + std::to_string(i), 100 + i, 256);
    write("a.obl", aPackage().containing(graph.text()));

    const ReportPage page = pageOf(0);

    EXPECT_TRUE(contains(page.file.text, ">4000 more</td>"));
    EXPECT_EQ(page.entry.inputs, 5000U);
    EXPECT_EQ(page.entry.objects.size(), 2000U);
}
