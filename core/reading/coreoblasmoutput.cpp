#include "reading/oblasmoutput.h"

#include "data/content/graph.h"
#include "data/latin1.h"
#include <QDomElement>

namespace Ksx::Core {

namespace {

using namespace Data::Content;

QString attributeOf(const QDomElement& element, const char* name)
{
    return element.attribute(QLatin1String(name));
}

// Leaves `attribute` as it is, and answers false, unless the element gives a number.
template <class Attribute>
bool readNumber(const QDomElement& element, const char* name, Attribute& attribute)
{
    bool isNumber = false;
    const unsigned number = attributeOf(element, name).toUInt(&isNumber);
    if (isNumber)
        attribute.assign(number);
    return isNumber;
}

void readUsages(const QDomElement& channels, GraphOutput& output)
{
    const QString name = QStringLiteral("channel");
    for (QDomElement channel = channels.firstChildElement(name); !channel.isNull();
         channel = channel.nextSiblingElement(name)) {
        auto usage = std::make_unique<Usage>();
        usage->components().assign(Orv::toLatin1(attributeOf(channel, "components")));
        usage->name().assign(Orv::toLatin1(attributeOf(channel, "names")));
        output.usages().pushBack(std::move(usage));
    }
}

} // namespace

bool addOblasmOutput(const QDomElement& element, Graph& graph)
{
    auto output = std::make_unique<GraphOutput>();
    auto rootOutput = std::make_unique<RootOutput>();
    if (!element.hasAttribute(QStringLiteral("identifier")) ||
        !readNumber(element, "uid", output->uid()))
        return false;
    readNumber(element, "format", rootOutput->format().value());
    readNumber(element, "mipmaps", rootOutput->mipmaps().value());
    output->identifier().assign(Orv::toLatin1(attributeOf(element, "identifier")));
    const QDomElement gui = element.firstChildElement(QStringLiteral("outputgui"));
    output->attributes().label().assign(Orv::toLatin1(attributeOf(gui, "label")));
    output->attributes().description().assign(Orv::toLatin1(attributeOf(gui, "description")));
    output->attributes().usertags().assign(Orv::toLatin1(attributeOf(gui, "usertag")));
    output->disabled().value().assign(attributeOf(gui, "state") == QLatin1String("disabled"));
    readUsages(element.firstChildElement(QStringLiteral("channels")), *output);
    rootOutput->output().assign(output->uid().get());
    graph.graphOutputs().pushBack(std::move(output));
    graph.root().rootOutputs().pushBack(std::move(rootOutput));
    return true;
}

} // namespace Ksx::Core
