// Small packages with graphs, for tests that compare and merge them.
#pragma once

#include "support/packagetext.h"
#include "support/workspace.h"
#include <string>

namespace TestSupport {

// A package that depends on itself by the uid 5.
inline std::string packageWith(const std::string& content)
{
    return aPackage().dependingOnItself(5).containing(content).text();
}

inline std::string packageWithNodes(const std::string& nodes)
{
    GraphText graph;
    graph.nodes = nodes;
    return packageWith(graph.text());
}

inline std::string packageWithInputs(const std::string& inputs)
{
    GraphText graph;
    graph.inputs = inputs;
    return packageWith(graph.text());
}

// A node whose output has the number behind that of the node.
inline std::string aBlend(unsigned uid, const std::string& connexions = {},
                          const std::string& parameters = {})
{
    return aNode(uid, aFilter("blend", parameters), connexions, uid + 1, 1);
}

// A connection to the output of such a node.
inline std::string fedBy(unsigned uid, const std::string& identifier = "source")
{
    return aConnexion(identifier, uid, uid + 1);
}

inline std::string aFloatParameter(const std::string& name, const std::string& value)
{
    return "<parameter><name v=\"" + name + "\"/><paramValue><constantValueFloat1><value v=\"" +
           value + "\"/></constantValueFloat1></paramValue></parameter>";
}

inline std::string aComputedParameter(const std::string& name, unsigned root,
                                      const std::string& nodes)
{
    return "<parameter><name v=\"" + name + "\"/><paramValue><dynamicValue><rootnode><value v=\"" +
           std::to_string(root) + "\"/></rootnode><paramNodes>" + nodes +
           "</paramNodes></dynamicValue></paramValue></parameter>";
}

inline std::string aFunctionNode(unsigned uid, const std::string& function,
                                 const std::string& connexions = {})
{
    return "<paramNode><uid v=\"" + std::to_string(uid) + "\"/><function v=\"" + function +
           "\"/><type><value v=\"256\"/></type>" +
           (connexions.empty() ? "" : "<connexions>" + connexions + "</connexions>") +
           "</paramNode>";
}

// A node that lies at that place.
inline std::string placedAt(const std::string& node, const std::string& place)
{
    return replaced(node, "<compOutputs>",
                    "<GUILayout><gpos v=\"" + place + "\"/></GUILayout><compOutputs>");
}

} // namespace TestSupport
