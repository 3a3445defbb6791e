// Paths to objects of a package.
#pragma once

#include "ksx/core/uidsource.h"
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Orv::Data {
class BaseObject;
} // namespace Orv::Data

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// The parts of a path to an object of a package. An example:
//
//     pkg://group/graph?dependency=12&typeParam=CompNodeType&compNodeUidParam=34
//
// The segments are identifiers of content items, from the root of the package on. Parameters follow
// the "?". Empty segments are left out. Nothing is escaped. A path is no URL: a URL would fold the
// case of the first segment.
//
// The parameter "dependency" holds the uid of a dependency element, which names the package. The
// other parameters, if there are any, lead from the object of the last segment to an object inside
// it.
//
// An immutable value without a link to any document. Use resolveObjectUrl() and objectUrl() for
// open packages.
class DataPath
{
public:
    // Returns whether the text begins with "pkg://".
    static bool isDataPath(std::string_view text);

    // Takes the text apart. It must be a data path.
    explicit DataPath(std::string_view text);

    // Returns the identifiers, from the outermost on.
    const std::vector<std::string>& segments() const { return m_segments; }

    // Returns the value of the first parameter of a key. Returns none if there is no parameter of
    // that key.
    std::optional<std::string> parameter(std::string_view key) const;
    // Returns the uid in "dependency". Returns none if it is missing or no unsigned decimal number.
    std::optional<Uid> dependency() const;

    // Returns the object that the path names in `package`, whatever its dependency. Returns null if
    // there is none. At each level the first item of an identifier wins. Without parameters beside
    // "dependency", that is the object of the last segment. The package itself for a path without
    // segments. Main thread.
    const Orv::Data::BaseObject* resolve(const Data::Content::Package& package) const;

    // Returns the same as dependency() for a path of that text, without taking the text apart.
    static std::optional<Uid> dependencyOf(std::string_view text);

    // Returns the text with a parameter set. A present parameter is changed in its place, and
    // nothing else is touched. A new one goes to the end.
    static std::string withParameter(std::string_view text, std::string_view key,
                                     std::string_view value);

    // Returns the text with another identifier in the segment of an index. Nothing else is touched.
    // Returns the text itself if it has no such segment.
    static std::string withSegment(std::string_view text, std::size_t index,
                                   std::string_view identifier);

private:
    std::vector<std::string> m_segments;
    std::vector<std::pair<std::string, std::string>> m_parameters;
};

// The keys of the parameters. "typeParam" names the kind of the object inside: CompNodeType,
// GraphOutputType, DynamicParamNodeType, FuncNodeType, ParamNodeType or GUIObjectType.
namespace DataPathKey {
// The uid of the dependency element.
constexpr std::string_view Dependency = "dependency";
// The kind of object inside the object of the last segment.
constexpr std::string_view Type = "typeParam";
// The uid of an image node, or of the one that holds the object.
constexpr std::string_view CompNodeUid = "compNodeUidParam";
// The uid of an output of a graph.
constexpr std::string_view GraphOutputUid = "graphOutputUidParam";
// The name of the computed parameter that holds a function node.
constexpr std::string_view ParameterName = "parameterNameParam";
// The uid of a parameter set of an FX-map.
constexpr std::string_view ParamGraphDataUid = "paramGraphDataUidParam";
// The uid of a function node in a parameter, or of a node of an FX-map.
constexpr std::string_view NodeUid = "nodeUidParam";
// The uid of a node in the body of a function.
constexpr std::string_view FuncNodeUid = "funcNodeUidParam";
// The uid of an object that is only drawn, a comment for one.
constexpr std::string_view GuiObjectUid = "GuiObjectUidParam";
} // namespace DataPathKey

} // namespace Ksx::Core
