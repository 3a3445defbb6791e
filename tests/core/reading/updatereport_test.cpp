// What the log of an update says, as it is printed.
#include "core/messagenode.h"
#include "data/content/package.h"
#include "ksx/core/packagereader.h"
#include "support/golden.h"
#include "support/temporarydirectory.h"
#include <QUrl>
#include <gtest/gtest.h>

using Ksx::Core::PackageReader;
using TestSupport::expectGolden;
using TestSupport::goldenPath;
using TestSupport::readFile;
using TestSupport::TemporaryDirectory;

namespace {

// The report of opening a file of the oldest version, with the directory of the test hidden.
QString reportOf(const std::string& document)
{
    const TemporaryDirectory directory;
    directory.write("input.obl", document);
    Orv::Core::MessageNode log;
    PackageReader::open(QUrl::fromLocalFile(QString::fromStdString(directory.path("input.obl"))),
                        &log, {}, {}, nullptr, nullptr, true);
    return log.toText().replace(QString::fromStdString(directory.path()), "DIRECTORY");
}

TEST(UpdateReport, NamesTheStepsAndWhatTheyChanged)
{
    const std::string document = readFile(goldenPath("chains/1.0.1.3000/input.obl"));
    expectGolden("updaters/report.txt", reportOf(document).toStdString());
}

TEST(UpdateReport, EndsWithTheStepThatFailed)
{
    const std::string document = "<package><formatVersion v=\"1.0.3.5017\"/></package>";
    expectGolden("updaters/failure.txt", reportOf(document).toStdString());
}

} // namespace
