#include "ksx/core/oblasmdocumentreader.h"

#include "data/content/graph.h"
#include "data/content/group.h"
#include "data/content/package.h"
#include "data/latin1.h"
#include "ksx/core/oblasminput.h"
#include "ksx/core/oblasmoutput.h"
#include "ksx/core/uidsource.h"
#include <QCoreApplication>
#include <QDomElement>
#include <QStringList>
#include <QUuid>
#include <QtEndian>
#include <cstring>

namespace Ksx::Core {

namespace {

using namespace Data::Content;
using ContentList = Orv::Data::ContainerList<ContentObjectBase>;

constexpr char Magic[] = {'O', 'L', 'A', 'M'};
constexpr int UidOffset = 12;

const ContentInterface* contentOf(const ContentObjectBase& item)
{
    return dynamic_cast<const ContentInterface*>(&item);
}

ContentObjectBase* findItem(ContentList& list, const std::string& identifier)
{
    for (std::size_t i = 0; i < list.size(); ++i)
        if (contentOf(list.at(i))->identifierAttribute().get() == identifier)
            return &list.at(i);
    return nullptr;
}

Uid freshUid(const ContentList& list)
{
    return UidSource::shared().next([&](Uid uid) {
        for (const ContentObjectBase& item : list)
            if (contentOf(item)->uidAttribute().get() == uid)
                return true;
        return false;
    });
}

// The wanted identifier, or the first one of the form "wanted_1" that is free.
std::string freeIdentifier(ContentList& list, const std::string& wanted)
{
    std::string identifier = wanted;
    for (unsigned number = 1; findItem(list, identifier) != nullptr; ++number)
        identifier = wanted + '_' + std::to_string(number);
    return identifier;
}

// The content of the group of that name, which is made if there is none.
ContentList& groupContent(ContentList& list, const std::string& identifier)
{
    for (std::size_t i = 0; i < list.size(); ++i) {
        auto* group = dynamic_cast<Group*>(&list.at(i));
        if (group != nullptr && group->identifier().get() == identifier)
            return group->content();
    }
    auto group = std::make_unique<Group>();
    group->identifier().assign(freeIdentifier(list, identifier));
    group->uid().assign(freshUid(list));
    ContentList& content = group->content();
    list.pushBack(std::move(group));
    return content;
}

QStringList segmentsOf(const QString& pkgUrl)
{
    QString path = pkgUrl;
    if (path.startsWith(QLatin1String("pkg://")))
        path.remove(0, 6);
    path = path.section('?', 0, 0);
    QStringList segments = path.split('/');
    segments.removeAll(QString());
    return segments;
}

// A new graph at the place that the URL names: the last segment is its identifier, those before it
// are groups.
Graph& addGraph(Package& package, const QString& pkgUrl)
{
    QStringList segments = segmentsOf(pkgUrl);
    const QString wanted = segments.isEmpty()
                               ? QCoreApplication::translate("Ksx::Data::Desc::Packages",
                                                             "DEFAULT_NEW_GRAPH_IDENTIFIER")
                               : segments.takeLast();
    ContentList* content = &package.content();
    for (const QString& segment : segments)
        content = &groupContent(*content, Orv::toLatin1(segment));
    auto graph = std::make_unique<Graph>();
    Graph& added = *graph;
    added.identifier().assign(freeIdentifier(*content, Orv::toLatin1(wanted)));
    added.uid().assign(freshUid(*content));
    content->pushBack(std::move(graph));
    return added;
}

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
    const Uid uid = root.attribute(QStringLiteral("asmuid")).toUInt(&isNumber);
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
        Graph& graph = addGraph(package, one.attribute(QStringLiteral("pkgurl")));
        if (!fillGraph(one, graph))
            return fail("ERROR_FAIL_TO_CREATE_GRAPH");
    }
    return true;
}

} // namespace Ksx::Core
