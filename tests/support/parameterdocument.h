// A live document whose one graph has parameters, and descriptions of such.
#pragma once

#include "data/attribute.h"
#include "data/content/graph.h"
#include "data/content/packageslist.h"
#include "data/desc/parametergroup.h"
#include "data/desc/valuetype.h"
#include "data/xmldatawriter.h"
#include "support/packagetext.h"
#include <QBuffer>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace TestSupport {

// An object as it stands in a file.
inline std::string xmlOf(const Orv::Data::BaseObject& object)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    Orv::Data::XmlDataWriter(&buffer).write(object);
    const std::string text = buffer.data().toStdString();
    const std::string element = text.substr(text.find("?>") + 2);
    return element.substr(0, element.find('\n'));
}

// The element of a constant, such as "Int2" and "1 2".
inline std::string aConstant(const std::string& kind, const std::string& value)
{
    const std::string element = "constantValue" + kind;
    return "<" + element + "><value v=\"" + value + "\"/></" + element + ">";
}

// The element of a parameter. An empty mode is not stated.
inline std::string aParameter(const std::string& name, const std::string& mode,
                              const std::string& value)
{
    return "<parameter><name v=\"" + name + "\"/>" +
           (mode.empty() ? "" : "<relativeTo v=\"" + mode + "\"/>") + "<paramValue>" + value +
           "</paramValue></parameter>";
}

// The element of a function node that reads an input.
inline std::string aGetter(unsigned uid, const std::string& function, unsigned type,
                           const std::string& input)
{
    return "<paramNode><uid v=\"" + std::to_string(uid) + "\"/><function v=\"" + function +
           "\"/><type><value v=\"" + std::to_string(type) +
           "\"/></type><funcDatas><funcData><name v=\"datacontent\"/><constantValue>" +
           aConstant("String", input) + "</constantValue></funcData></funcDatas></paramNode>";
}

// The element of a computed value.
inline std::string aDynamicValue(unsigned root, const std::string& nodes)
{
    return "<dynamicValue><rootnode><value v=\"" + std::to_string(root) +
           "\"/></rootnode><paramNodes>" + nodes + "</paramNodes></dynamicValue>";
}

class ParameterDocument
{
public:
    using List = Ksx::Data::Content::GraphParametersList;

    explicit ParameterDocument(const std::string& parameters = {})
    {
        const std::string list = parameters.empty()
                                     ? "<baseParameters/>"
                                     : "<baseParameters>" + parameters + "</baseParameters>";
        root.content().pushBack(packageFrom(
            aPackage().containing("<graph><identifier v=\"g\"/><uid v=\"4\"/><graphOutputs/>"
                                  "<compNodes/>" +
                                  list + "<content/><root/></graph>")));
    }

    const Ksx::Data::Content::Package& package() const { return root.content().at(0); }
    const List& parameters() const
    {
        return static_cast<const Ksx::Data::Content::Graph&>(package().content().at(0))
            .baseParameters();
    }
    // The elements in the list.
    std::string text() const
    {
        const std::string begin = "<baseParameters>";
        const std::string end = "</baseParameters>";
        const std::string list = xmlOf(parameters());
        return list == "<baseParameters/>"
                   ? ""
                   : list.substr(begin.size(), list.size() - begin.size() - end.size());
    }

    Ksx::Data::Content::PackagesList root;
};

inline Ksx::Data::Desc::Parameter aDescription(const std::string& identifier, unsigned type,
                                               boost::any defaultValue = {}, unsigned flags = 0)
{
    Ksx::Data::Desc::Parameter description;
    description.identifier = identifier;
    description.type = type;
    description.flags = flags;
    description.nameKey = "NAME_OF_" + identifier;
    description.defaultValue =
        defaultValue.empty() ? Ksx::Data::Desc::emptyValueOf(type) : std::move(defaultValue);
    return description;
}

inline Ksx::Data::Desc::ParameterGroupPointer
aGroupOf(const std::vector<Ksx::Data::Desc::Parameter>& parameters)
{
    using namespace Ksx::Data::Desc;
    auto group = std::make_shared<ParameterGroup>(GroupRole::Main, "group", "NAME", "DESC");
    for (const Parameter& parameter : parameters)
        group->add(parameter);
    return group;
}

} // namespace TestSupport
