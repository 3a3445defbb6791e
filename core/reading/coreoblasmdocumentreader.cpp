#include "reading/oblasmdocumentreader.h"

#include "data/content/graph.h"
#include "data/content/package.h"
#include "data/latin1.h"
#include "reading/oblasmgraphplaces.h"
#include "reading/oblasminput.h"
#include "reading/oblasmoutput.h"
#include <QCoreApplication>
#include <QDomElement>
#include <QUuid>
#include <QtEndian>
#include <cstring>
#include <utility>

namespace Ksx::Core {

namespace {

using namespace Data::Content;

constexpr char Magic[] = {'O', 'L', 'A', 'M'};
constexpr int UidOffset = 12;

void readAttributes(const QDomElement& element, Attributes& attributes)
{
    const auto read = [&](const char* name, auto& attribute) {
        attribute.assign(Orv::toLatin1(element.attribute(QLatin1String(name))));
    };
    read("label", attributes.label());
    read("keywords", attributes.tags());
    read("description", attributes.description());
    read("author", attributes.author());
    read("authorurl", attributes.authorURL());
    read("usertag", attributes.usertags());
}

QString importerText(const char* key)
{
    return QCoreApplication::translate("Ksx::Core::OBLASMImporter", key);
}

// Says which graph failed, and what of it, unless `log` is null. `part` may be empty.
bool failGraph(Orv::Core::MessageNode* log, const QString& pkgUrl, const QString& part)
{
    if (log == nullptr)
        return false;
    auto& message =
        log->add(Orv::Core::MessageLevel::Error, importerText("ERROR_FAIL_TO_CREATE_GRAPH"));
    message.add(Orv::Core::MessageLevel::Error,
                part.isEmpty() ? pkgUrl : pkgUrl + QStringLiteral(": ") + part);
    return false;
}

// The name of an input or output for a message, which is its number in the list if it has none.
QString nameOf(const QDomElement& element, int number)
{
    const QString identifier = element.attribute(QStringLiteral("identifier"));
    return element.tagName() + ' ' +
           (identifier.isEmpty() ? '#' + QString::number(number) : identifier);
}

// Calls `read` for each element of that name in a list. Answers the name of the first for which it
// is false. Null without one.
template <class Read>
QString firstFailure(const QDomElement& list, const QString& name, Read read)
{
    int number = 0;
    for (QDomElement one = list.firstChildElement(name); !one.isNull();
         one = one.nextSiblingElement(name)) {
        ++number;
        if (!read(one))
            return nameOf(one, number);
    }
    return {};
}

// Answers the name of the input or output that failed. Null without one.
QString fillGraph(const QDomElement& element, Graph& graph)
{
    readAttributes(element, graph.attributes());
    QString failure = firstFailure(element.firstChildElement(QStringLiteral("inputs")),
                                   QStringLiteral("input"), [&](const QDomElement& one) {
                                       auto input = readOblasmInput(one);
                                       if (input == nullptr)
                                           return false;
                                       graph.paraminputs().pushBack(std::move(input));
                                       return true;
                                   });
    if (!failure.isNull())
        return failure;
    return firstFailure(element.firstChildElement(QStringLiteral("outputs")),
                        QStringLiteral("output"),
                        [&](const QDomElement& one) { return addOblasmOutput(one, graph); });
}

} // namespace

bool OBLASMAssembly::isValid() const
{
    if (header.size() < HeaderSize || std::memcmp(header.constData(), Magic, sizeof(Magic)) != 0)
        return false;
    const QDomElement root = description.documentElement();
    if (root.tagName() != QLatin1String("obldescription"))
        return false;
    bool isNumber = false;
    const quint32 uid = root.attribute(QStringLiteral("asmuid")).toUInt(&isNumber);
    return isNumber && uid == qFromLittleEndian<quint32>(header.constData() + UidOffset);
}

OBLASMDocumentReader::OBLASMDocumentReader(const OBLASMAssembly& assembly,
                                           Orv::Core::MessageNode* log)
    : m_assembly(assembly), m_log(log)
{}

bool OBLASMDocumentReader::fail(const char* key) const
{
    addMessage(m_log, Orv::Core::MessageLevel::Error, importerText(key));
    return false;
}

bool OBLASMDocumentReader::read(Package& package) const
{
    OBLASMContent content;
    const bool isRead = read(content);
    OBLASMGraphPlaces places(package);
    return content.moveTo(package, places, m_log) && isRead;
}

bool OBLASMDocumentReader::read(OBLASMContent& content) const
{
    const QDomElement root = m_assembly.description.documentElement();
    if (root.isNull())
        return fail("ERROR_FAIL_TO_RETRIEVE_OBLASM_FILE_DESCRIPTION");
    const QDomElement graphs = root.firstChildElement(QStringLiteral("graphs"));
    if (graphs.isNull())
        return fail("ERROR_NO_GRAPH_ARRAY_ELEMENT_FOUND");
    content.fileUid = QUuid(root.attribute(QStringLiteral("fileUid"))).toString().toStdString();
    const QString graphName = QStringLiteral("graph");
    for (QDomElement one = graphs.firstChildElement(graphName); !one.isNull();
         one = one.nextSiblingElement(graphName)) {
        const QString pkgUrl = one.attribute(QStringLiteral("pkgurl"));
        content.graphs.push_back({pkgUrl, std::make_unique<Graph>()});
        const QString failure = fillGraph(one, *content.graphs.back().graph);
        if (!failure.isNull())
            return failGraph(m_log, pkgUrl, failure);
    }
    return true;
}

OBLASMContent::OBLASMContent() = default;
OBLASMContent::OBLASMContent(OBLASMContent&&) noexcept = default;
OBLASMContent& OBLASMContent::operator=(OBLASMContent&&) noexcept = default;
OBLASMContent::~OBLASMContent() = default;

bool OBLASMContent::moveTo(Package& package, OBLASMGraphPlaces& places, Orv::Core::MessageNode* log)
{
    if (!fileUid.empty())
        package.fileUID().assign(fileUid);
    for (PlacedGraph& one : graphs)
        if (!places.add(one.pkgUrl, std::move(one.graph)))
            return failGraph(log, one.pkgUrl, {});
    graphs.clear();
    return true;
}

} // namespace Ksx::Core
