// The format of package files, as data.
#pragma once

#include <string>
#include <vector>

namespace Ksx::Kit {

// The form of the element of a member.
enum class MemberKind
{
    // A value in the attribute "v".
    Value,
    // The members of a structure.
    Structure,
    // Any number of items, in order.
    List,
    // One item, or none.
    Union,
};

// An item of a list or a union.
struct FormatItem
{
    // The name of its element.
    std::string element;
    // The structure whose members the element holds.
    std::string structure;
};

// A member of a structure.
struct FormatMember
{
    // The name of its element.
    std::string element;
    MemberKind kind = MemberKind::Value;
    // Whether a file that lacks the member is refused.
    bool isRequired = false;
    // Whether the value is the path of a file.
    bool isFilePath = false;
    // The type of a value: "string", "bool", "uint32", "float", "float1" to "float4" or "int1" to
    // "int4".
    std::string type;
    // The declared default of a value. Empty if that is the empty value of the type.
    std::string defaultValue;
    // The structure whose members the element holds.
    std::string structure;
    // The items of a list, or the choices of a union.
    std::vector<FormatItem> items;
};

// A structure of the format. Its members are in the order of writing.
struct FormatStructure
{
    std::string name;
    std::vector<FormatMember> members;
};

// Returns all structures of the current format, made of the member tables. Each is named by its
// element, and structures of values that may be overloaded by the type of the value. The first one
// is the root of a file, "package".
std::vector<FormatStructure> packageFormat();

} // namespace Ksx::Kit
