#include "support/readinglanes.h"

#include "core/messagenode.h"
#include "data/content/package.h"
#include "data/lightdocumentreader.h"
#include "data/lightdocumentwriter.h"
#include "data/xmldatawriter.h"
#include "data/xmldocument.h"
#include "reading/extensionregistry.h"
#include "reading/oblimporter.h"
#include "support/packagetext.h"
#include "support/paths.h"
#include "updating/documentdevice.h"
#include <QBuffer>
#include <QDirIterator>
#include <QFile>
#include <algorithm>

namespace TestSupport {

namespace {

using Orv::Data::XmlLane;

struct Outcome
{
    int status = 0;
    std::string message;
    std::string exception;
    std::string tree; // as it is written; "none" without one
};

std::string written(const Orv::Data::BaseObject& root)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    Orv::Data::XmlDataWriter(&buffer).write(root);
    return buffer.data().toStdString();
}

std::unique_ptr<Orv::Data::BaseObject> makePackage()
{
    return std::make_unique<Ksx::Data::Content::Package>();
}

QByteArray bytesOf(const std::string& document)
{
    return QByteArray(document.data(), static_cast<int>(document.size()));
}

Outcome outcomeOf(QByteArray bytes, XmlLane lane)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    Outcome outcome;
    outcome.tree = "none";
    try {
        const auto read = Orv::Data::readXmlDocument(buffer, &makePackage, {}, lane);
        outcome.status = read.status;
        outcome.message = read.errorString.toStdString();
        if (read.root != nullptr)
            outcome.tree = written(*read.root);
    } catch (const std::exception& exception) {
        outcome.exception = exception.what();
    }
    return outcome;
}

// The text of a light document, or why there is none.
std::string lightText(const std::string& document, XmlLane lane)
{
    Orv::Data::LightDocument light;
    Orv::Data::DocumentError error;
    const bool isRead = readLightDocument(bytesOf(document), light, error, lane);
    return isRead ? serialise(light).toStdString() : error.text().toStdString();
}

// Returns an empty text if the tree of the light document is that of its text. Where there is none,
// the text is read in any case.
std::string differenceOfTrees(const std::string& document, XmlLane lane)
{
    Orv::Data::LightDocument light;
    Orv::Data::DocumentError error;
    if (!readLightDocument(bytesOf(document), light, error, lane))
        return {};
    const auto tree = Orv::Data::treeOf(light, &makePackage, {});
    if (tree == nullptr)
        return {};
    const std::string direct = written(*tree);
    const Outcome general = outcomeOf(serialise(light), XmlLane::General);
    return direct == general.tree ? "" : "direct tree " + direct + " and " + general.tree;
}

enum class Handing
{
    Document,
    Text,
};

// Runs all format updaters on a document and imports what they leave. Returns the tree with all
// messages.
std::string updated(const std::string& document, Handing handing)
{
    Ksx::Core::DocumentDevice device(bytesOf(document));
    device.open(QIODevice::ReadWrite);
    Orv::Core::MessageNode log;
    for (const auto* updater : Ksx::Core::ExtensionRegistry::instance().formatUpdaters()) {
        if (!updater->update(device, &log, {}))
            return "failed " + log.toText().toStdString();
        device.seek(0);
    }
    if (handing == Handing::Text)
        device.releaseDocument();
    const auto tree = Ksx::Core::OBLImporter().import(device, &log, {});
    return (tree == nullptr ? "none" : written(*tree)) + log.toText().toStdString();
}

// White space, markup, and bytes that are part of no character.
const std::vector<std::string> Pieces = {"<",
                                         ">",
                                         "/",
                                         "&",
                                         ";",
                                         "\"",
                                         "'",
                                         "=",
                                         " ",
                                         "\n",
                                         "\t",
                                         "\r",
                                         std::string(1, '\0'),
                                         "\x01",
                                         "\x7F",
                                         "v",
                                         "a",
                                         ":",
                                         "!",
                                         "?",
                                         "-->",
                                         "]]>",
                                         "\xC3",
                                         "\xA9",
                                         "\xC0\x80",
                                         "\xED\xA0\x80",
                                         "\xEF\xBB\xBF",
                                         "\xEF\xBF\xBE",
                                         "\xF4\x90\x80\x80",
                                         "\xC2\x85",
                                         "\xE2\x80\xA8"};
const std::vector<std::string> Values = {"",
                                         " ",
                                         "0",
                                         "1",
                                         "-1",
                                         "4294967295",
                                         "nan",
                                         "1 2 3",
                                         "a&#10;b",
                                         "a&#xA;b",
                                         "&#9;",
                                         "&#13;",
                                         "&#xD;&#xA;",
                                         "&lt;&gt;&amp;&quot;&apos;",
                                         "&#60;",
                                         "&#38;",
                                         "&unknown;",
                                         "&#0;",
                                         "&#xFFFE;",
                                         "&#x1F600;",
                                         "&#x110000;",
                                         "&#X41;",
                                         "&#65",
                                         "&;",
                                         "&#;",
                                         "&#x;",
                                         "&#00000065;",
                                         "&#000000065;",
                                         "\xC3\xA9",
                                         "\xE2\x82\xAC",
                                         "\xF0\x9F\x98\x80",
                                         "a\nb",
                                         "a\tb",
                                         "a\rb",
                                         "a>b",
                                         "a<b",
                                         "it's",
                                         "\xEF\xBF\xBD",
                                         "\xC2\xA0",
                                         "\xE2\x80\xA8",
                                         "&#x85;",
                                         "&#xA0;",
                                         "&#128;",
                                         "\x80"};
const std::vector<std::string> Insertions = {"<!-- c -->",
                                             "<?pi x?>",
                                             "<![CDATA[x]]>",
                                             "text",
                                             "<x/>",
                                             "<x v=\"1\"/>",
                                             "<x><y/></x>",
                                             "<x v='1' />",
                                             "<x v = \"1\"/>",
                                             "<x w=\"1\"/>",
                                             "<x v=\"1\" v=\"2\"/>",
                                             "<x v=\"1\"w=\"2\"/>",
                                             "<p:x/>",
                                             "<x xmlns=\"u\"/>",
                                             "<\xC3\xA9/>",
                                             "<x",
                                             "</x>",
                                             "<x/ >",
                                             "< x/>",
                                             "<x>text</x>",
                                             "<x\n/>",
                                             "</identifier >",
                                             "<!DOCTYPE package>",
                                             "<package>",
                                             "</package>",
                                             "<1/>",
                                             "<-/>",
                                             "<a.b-c_d/>",
                                             "<x v=\"1\"></x>",
                                             "&amp;",
                                             "\n  "};

std::string reportOf(long number, const std::string& difference, const std::string& mutant)
{
    return "mutant " + std::to_string(number) + ": " + difference + "\nof\n" + mutant;
}

} // namespace

std::string differenceOfLanes(const std::string& document)
{
    const Outcome fast = outcomeOf(bytesOf(document), XmlLane::Fast);
    const Outcome general = outcomeOf(bytesOf(document), XmlLane::General);
    if (fast.status != general.status)
        return "status " + std::to_string(fast.status) + " and " + std::to_string(general.status);
    if (fast.message != general.message)
        return "message " + fast.message + " and " + general.message;
    if (fast.exception != general.exception)
        return "exception " + fast.exception + " and " + general.exception;
    return fast.tree == general.tree ? "" : "tree " + fast.tree + " and " + general.tree;
}

std::string differenceOfLightDocuments(const std::string& document)
{
    const std::string fast = lightText(document, XmlLane::Fast);
    const std::string general = lightText(document, XmlLane::General);
    if (fast != general)
        return "light document " + fast + " and " + general;
    return differenceOfTrees(document, XmlLane::Fast) +
           differenceOfTrees(document, XmlLane::General);
}

std::string differenceOfUpdates(const std::string& document)
{
    const std::string direct = updated(document, Handing::Document);
    const std::string byText = updated(document, Handing::Text);
    return direct == byText ? "" : "update " + direct + " and " + byText;
}

std::vector<std::string> documentsForLanes()
{
    constexpr qint64 Small = 20000;
    std::vector<std::string> documents;
    for (const char* const folder : {"examples", "tests/golden"}) {
        QDirIterator files(QString::fromStdString(sourcePath(folder)), {"*.obl"}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            if (file.size() <= Small && file.open(QIODevice::ReadOnly))
                documents.push_back(file.readAll().toStdString());
        }
    }
    std::sort(documents.begin(), documents.end()); // whatever the order of the file system
    documents.push_back(aPackage()
                            .named("a&lt;b")
                            .with("author", "\xC3\xA9&#10;\xE2\x82\xAC&#x1F600;")
                            .dependingOn("\xC3\xA9/\xF0\x9F\x98\x80 &amp;.obl", 7)
                            .containing(aGroup("g", aGroupSaying("h", "it's > 'that'")))
                            .text());
    return documents;
}

std::size_t XmlMutator::below(std::size_t count)
{
    return count == 0 ? 0 : m_random() % count;
}

const std::string& XmlMutator::oneOf(const std::vector<std::string>& texts)
{
    return texts[below(texts.size())];
}

XmlMutator::Range XmlMutator::anyTag(const std::string& document)
{
    const std::size_t begin = document.find('<', below(document.size()));
    const std::size_t end = begin == std::string::npos ? begin : document.find('>', begin);
    return end == std::string::npos ? Range(0, 0) : Range(begin, end + 1 - begin);
}

XmlMutator::Range XmlMutator::anyValue(const std::string& document)
{
    const std::size_t begin = document.find("v=\"", below(document.size()));
    const std::size_t end = begin == std::string::npos ? begin : document.find('"', begin + 3);
    return end == std::string::npos ? Range(0, 0) : Range(begin + 3, end - begin - 3);
}

void XmlMutator::mutate(std::string& document)
{
    const Range tag = anyTag(document);
    const std::string text = document.substr(tag.first, tag.second);
    const std::size_t place = below(document.size() + 1);
    switch (below(9)) {
    case 0:
        document.insert(place, oneOf(Pieces));
        break;
    case 1:
        document.erase(place, 1 + below(3));
        break;
    case 2:
        if (place < document.size())
            document[place] = oneOf(Pieces)[0];
        break;
    case 3: {
        const Range value = anyValue(document);
        document.replace(value.first, value.second, oneOf(Values));
        break;
    }
    case 4:
        document.erase(tag.first, tag.second);
        break;
    case 5:
        document.insert(tag.first, text);
        break;
    case 6:
        document.insert(anyTag(document).first, text);
        break;
    case 7:
        document.insert(tag.first, oneOf(Insertions));
        break;
    default:
        if (below(8) == 0)
            document.resize(place);
        else
            document.insert(tag.first + tag.second, oneOf(Insertions));
    }
}

std::string XmlMutator::mutant(std::string document)
{
    for (std::size_t count = 1 + below(2); count != 0; --count)
        mutate(document);
    return document;
}

std::string firstDifferenceOfLanes(unsigned seed, long count)
{
    const std::vector<std::string> documents = documentsForLanes();
    XmlMutator mutator(seed);
    for (long i = 0; i < count; ++i) {
        const std::string mutant =
            mutator.mutant(documents[static_cast<std::size_t>(i) % documents.size()]);
        std::string difference = differenceOfLanes(mutant);
        difference += differenceOfLightDocuments(mutant);
        difference += differenceOfUpdates(mutant);
        if (!difference.empty())
            return reportOf(i, difference, mutant);
    }
    return {};
}

} // namespace TestSupport
