// Paths to objects of an open document.
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

// "pkg://group/graph?dependency=12&typeParam=CompNodeType&compNodeUidParam=34": identifiers of
// `content` items from the package's root on, then parameters. Plain text without any escaping, and
// never taken for a URL, which would fold the case of the first segment. Empty segments count for
// nothing. The parameter "dependency" holds the uid of a dependency element; the others, if there
// are any, lead from the object of the last segment to an object inside it.
class DataPath
{
public:
    // Does the text begin as a data path does?
    static bool isDataPath(std::string_view text);

    // `text` is a data path.
    explicit DataPath(std::string_view text);

    const std::vector<std::string>& segments() const { return m_segments; }
    // The first parameter of that name; none if there is no such key.
    std::optional<std::string> parameter(std::string_view key) const;
    // The value of "dependency", none if it is missing or no unsigned decimal number.
    std::optional<Uid> dependency() const;

    // The object that the path names in `package`, whatever its dependency; null if there is none.
    // At each level the first item of the identifier wins.
    const Orv::Data::BaseObject* resolve(const Data::Content::Package& package) const;

    // What dependency() answers for a path of that text, without taking the text apart.
    static std::optional<Uid> dependencyOf(std::string_view text);

    // The text with a parameter set: one that stands is changed in its place and nothing else is
    // touched; a new one goes to the end.
    static std::string withParameter(std::string_view text, std::string_view key,
                                     std::string_view value);

private:
    std::vector<std::string> m_segments;
    std::vector<std::pair<std::string, std::string>> m_parameters;
};

// Keys and kinds of typed paths.
namespace DataPathKey {
constexpr std::string_view Dependency = "dependency";
constexpr std::string_view Type = "typeParam";
constexpr std::string_view CompNodeUid = "compNodeUidParam";
constexpr std::string_view GraphOutputUid = "graphOutputUidParam";
constexpr std::string_view ParameterName = "parameterNameParam";
constexpr std::string_view ParamGraphDataUid = "paramGraphDataUidParam";
constexpr std::string_view NodeUid = "nodeUidParam";
constexpr std::string_view FuncNodeUid = "funcNodeUidParam";
constexpr std::string_view GuiObjectUid = "GuiObjectUidParam";
} // namespace DataPathKey

} // namespace Ksx::Core
