// Elements of function graphs as text, beside those of support/parameterdocument.h.
#pragma once

#include "support/parameterdocument.h"
#include <string>

namespace TestSupport {

// A connection to an input of a function node, whose sources have but one output.
inline std::string aLink(const std::string& input, unsigned source)
{
    return "<connexion><identifier v=\"" + input + "\"/><connRef><value v=\"" +
           std::to_string(source) + "\"/></connRef></connexion>";
}

// What a function node holds. An empty constant is none.
inline std::string aDataItem(const std::string& constant, const std::string& name = "datacontent")
{
    return constant.empty() ? ""
                            : "<funcData><name v=\"" + name + "\"/><constantValue>" + constant +
                                  "</constantValue></funcData>";
}

struct FunctionText
{
    unsigned uid = 1;
    std::string function = {};
    unsigned type = 256;
    std::string links = {}; // elements of aLink()
    std::string data = {};  // elements of aDataItem()
    std::string position = {};

    std::string text() const
    {
        return "<paramNode><uid v=\"" + std::to_string(uid) + "\"/><function v=\"" + function +
               "\"/><type><value v=\"" + std::to_string(type) + "\"/></type>" +
               (links.empty() ? "" : "<connexions>" + links + "</connexions>") +
               (data.empty() ? "" : "<funcDatas>" + data + "</funcDatas>") +
               (position.empty() ? "" : "<GUILayout><gpos v=\"" + position + "\"/></GUILayout>") +
               "</paramNode>";
    }
};

inline std::string aFunctionNode(unsigned uid, const std::string& function, unsigned type,
                                 const std::string& links = {}, const std::string& data = {})
{
    return FunctionText{uid, function, type, links, data, {}}.text();
}

// A node that holds a constant, such as of the kind "Float1".
inline std::string aConstantNode(unsigned uid, const std::string& function, unsigned type,
                                 const std::string& kind, const std::string& value)
{
    return aFunctionNode(uid, function, type, {}, aDataItem(aConstant(kind, value)));
}

// The same as aDynamicValue(), without a root.
inline std::string aRootlessValue(const std::string& nodes)
{
    return nodes.empty() ? "<dynamicValue><paramNodes/></dynamicValue>"
                         : "<dynamicValue><paramNodes>" + nodes + "</paramNodes></dynamicValue>";
}

} // namespace TestSupport
