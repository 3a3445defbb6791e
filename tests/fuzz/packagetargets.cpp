// Packages as XML: the two lanes of their reader, and their updates.
#include "data/content/package.h"
#include "data/xmldatawriter.h"
#include "fuzztargets.h"
#include "grammarmutator.h"
#include "ksx/core/packagereader.h"
#include "package/packagefile.h"
#include "support/readinglanes.h"
#include "support/temporarydirectory.h"

#include <QBuffer>
#include <QUrl>

namespace TestSupport {

namespace {

std::string differenceOfReading(const std::string& document)
{
    const std::string difference = differenceOfLanes(document);
    return difference.empty() ? differenceOfLightDocuments(document) : difference;
}

// Returns the package of a file as it is saved, after all updates that it needs. Returns an empty text
// if there is none.
std::string opened(const std::string& document)
{
    static const TemporaryDirectory directory;
    const QUrl url = QUrl::fromLocalFile(QString::fromStdString(directory.path("a.obl")));
    directory.write("a.obl", document);
    const auto package =
        Ksx::Core::PackageReader::open(url, nullptr, {}, {}, nullptr, nullptr, true);
    if (package == nullptr)
        return {};
    Ksx::Core::stampPackage(*package, url.toLocalFile());
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    Orv::Data::XmlDataWriter(&buffer).write(*package);
    return buffer.data().toStdString();
}

// A package that was updated needs no update: opened again it is the same.
std::string differenceOfSecondUpdate(const std::string& document)
{
    const std::string first = opened(document);
    const std::string second = first.empty() ? first : opened(first);
    return first == second ? "" : "second update " + second + " of " + first;
}

std::string differenceInUpdating(const std::string& document)
{
    const std::string difference = differenceOfUpdates(document);
    return difference.empty() ? differenceOfSecondUpdate(document) : difference;
}

std::string changedAsDocument(const std::string& input, const std::string& other, unsigned seed)
{
    return seed % 4 == 0 ? XmlMutator(seed).mutant(input)
                         : GrammarMutator(seed).mutant(input, other);
}

} // namespace

std::vector<FuzzTarget> packageTargets()
{
    return {{"lanes", &differenceOfReading, &documentsForLanes, &changedAsDocument},
            {"updates", &differenceInUpdating, &documentsForLanes, &changedAsDocument}};
}

} // namespace TestSupport
