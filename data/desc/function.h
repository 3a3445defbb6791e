// What is known of an atomic function, the node of a graph that computes a value.
#pragma once

#include "data/desc/valuetype.h"
#include <boost/any.hpp>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Ksx::Data::Desc {

// The numbers of the functions.
enum class FunctionsEnum : unsigned
{
    // clang-format off
    Sequence, IfElse, If, DoWhile, Set,
    GetBool, GetInteger1, GetInteger2, GetInteger3, GetInteger4,
    GetFloat1, GetFloat2, GetFloat3, GetFloat4, GetPath,
    ConstString, ConstBool, ConstInt1, ConstInt2, ConstInt3, ConstInt4,
    ConstFloat1, ConstFloat2, ConstFloat3, ConstFloat4, Instance,
    Vector2, Vector3, Vector4, Swizzle1, Swizzle2, Swizzle3, Swizzle4,
    IVector2, IVector3, IVector4, ISwizzle1, ISwizzle2, ISwizzle3, ISwizzle4,
    ToInt1, ToInt2, ToInt3, ToInt4, ToFloat, ToFloat2, ToFloat3, ToFloat4,
    Add, Sub, Mul, MulScalar, Div, Neg, Mod, Dot, Cross, And, Or, Not,
    Eq, NotEq, Gt, GtEq, Lr, LrEq, Abs, Floor, Ceil, Cos, Sin, Sqrt, Log, Exp, Pow2, Tan, Atan2,
    Cartesian, Lerp, Min, Max, Rand, SampleLum, SampleCol
    // clang-format on
};

// Sets of types and marks of the type words of functions; the types themselves are in ValueType.
namespace FunctionType {
constexpr unsigned List = 65536;      // one connection per entry. Part of AnyOrNone: ask takesList
constexpr unsigned Generic = 131072;  // of one and the same type wherever the function has the mark
constexpr unsigned NoOutput = 524288; // the type of a node without a value

constexpr unsigned AnyInt = ValueType::Int1 | ValueType::Int2 | ValueType::Int3 | ValueType::Int4;
// Of two components or more.
constexpr unsigned AnyFloatVector = ValueType::Float2 | ValueType::Float3 | ValueType::Float4;
constexpr unsigned AnyFloat = ValueType::Float1 | AnyFloatVector;
constexpr unsigned AnyNumber = AnyInt | AnyFloat;
constexpr unsigned Int1OrAnyFloat = ValueType::Int1 | AnyFloat;
constexpr unsigned Int1OrFloat1 = ValueType::Int1 | ValueType::Float1;
constexpr unsigned String = ValueType::Text;
// Without images.
constexpr unsigned AnyValue = ValueType::Bool | AnyNumber | ValueType::Text | ValueType::String;
constexpr unsigned AnyOrNone = AnyValue | List; // a flow input: any value, or a node without one

// Returns true if a value of that one type may go to an input of `types`; NoOutput may only go to a
// flow input.
bool includes(unsigned types, unsigned type);
} // namespace FunctionType

struct FunctionInput
{
    std::string identifier;
    std::string key;   // of a translation in the context "Ksx::Data::Desc::Functions"
    unsigned type = 0; // the types that it takes, and marks
    bool takesList = false;

    bool isGeneric() const { return (type & FunctionType::Generic) != 0; }
};

// What a node holds beside its connections, in its function data.
struct FunctionData
{
    enum class Role
    {
        VariableName,
        Value,
        ComponentIndexes,
        ImageIndex
    };

    Role role = Role::Value;
    std::string identifier;  // the name of the data: "datacontent"
    std::string key;         // of a translation in the context "Ksx::Data::Desc::Functions"
    unsigned type = 0;       // one ValueType
    boost::any defaultValue; // of the shape of emptyValueOf(type)
    std::map<std::string, std::string> extras; // "valueInterpretation"
};

struct Function
{
    std::string identifier; // in package files
    unsigned kind = 0;      // of FunctionsEnum
    // Keys of translations in the context "Ksx::Data::Desc::Functions".
    std::string nameKey;
    std::string descKey;
    std::vector<FunctionInput> inputs;
    unsigned outputType = 0;   // the types that it may have, and marks
    unsigned genericTypes = 0; // what the generic type is one of; 0 if the function has none
    std::optional<FunctionData> data;

    bool hasOutput() const { return (outputType & FunctionType::NoOutput) == 0; }
    // The input of that identifier, or null.
    const FunctionInput* input(const std::string& name) const;

    // `fed` holds the type that each input gets, by its index: 0 where nothing is connected or where
    // it ends before. It says nothing of inputs that take lists.

    // The types that one input takes beside the others. A generic input takes just the type that
    // another one gets, and any of `genericTypes` as long as none gets one of them.
    unsigned acceptedTypes(std::size_t index, const std::vector<unsigned>& fed) const;
    bool accepts(std::size_t index, unsigned type, const std::vector<unsigned>& fed) const;
    // The type of the output: NoOutput if it has none, 0 while it is open or the generic inputs
    // disagree.
    unsigned outputTypeFor(const std::vector<unsigned>& fed) const;
};

// Of the nine getters of variables of one type (which the getter of a path is not).
bool isTypedGetter(unsigned kind);
// The constant that can replace a typed getter, and the other way round.
unsigned constantOfGetter(unsigned getterKind);
unsigned getterOfConstant(unsigned constantKind);

} // namespace Ksx::Data::Desc
