#include "ksx/core/oblasmdocumentreader.h"

#include "data/content/graph.h"
#include "data/content/package.h"
#include "data/latin1.h"
#include "ksx/core/oblasmgraphplaces.h"
#include "ksx/core/oblasminput.h"
#include "ksx/core/oblasmoutput.h"
#include <QCoreApplication>
#include <QDomElement>
#include <QUuid>
#include <QtEndian>
#include <cstring>

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

bool fillGraph(const QDomElement& element, Graph& graph)
{
    readAttributes(element, graph.attributes());
    const QString inputName = QStringLiteral("input");
    const QDomElement inputs = element.firstChildElement(QStringLiteral("inputs"));
    for (QDomElement one = inputs.firstChildElement(inputName); !one.isNull();
         one = one.nextSiblingElement(inputName)) {
        auto input = readOblasmInput(one);
        if (input == nullptr)
            return false;
        graph.paraminputs().pushBack(std::move(input));
    }
    const QString outputName = QStringLiteral("output");
    const QDomElement outputs = element.firstChildElement(QStringLiteral("outputs"));
    for (QDomElement one = outputs.firstChildElement(outputName); !one.isNull();
         one = one.nextSiblingElement(outputName))
        if (!addOblasmOutput(one, graph))
            return false;
    return true;
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
    addMessage(m_log, Orv::Core::MessageLevel::Error,
               QCoreApplication::translate("Ksx::Core::OBLASMImporter", key));
    return false;
}

bool OBLASMDocumentReader::read(Package& package) const
{
    OBLASMGraphPlaces places(package);
    return read(package, places);
}

bool OBLASMDocumentReader::read(Package& package, OBLASMGraphPlaces& places) const
{
    const QDomElement root = m_assembly.description.documentElement();
    if (root.isNull())
        return fail("ERROR_FAIL_TO_RETRIEVE_OBLASM_FILE_DESCRIPTION");
    const QDomElement graphs = root.firstChildElement(QStringLiteral("graphs"));
    if (graphs.isNull())
        return fail("ERROR_NO_GRAPH_ARRAY_ELEMENT_FOUND");
    const QUuid fileUid(root.attribute(QStringLiteral("fileUid")));
    package.fileUID().assign(fileUid.toString().toStdString());
    const QString graphName = QStringLiteral("graph");
    for (QDomElement one = graphs.firstChildElement(graphName); !one.isNull();
         one = one.nextSiblingElement(graphName)) {
        Graph* graph = places.add(one.attribute(QStringLiteral("pkgurl")));
        if (graph == nullptr || !fillGraph(one, *graph))
            return fail("ERROR_FAIL_TO_CREATE_GRAPH");
    }
    return true;
}

} // namespace Ksx::Core
