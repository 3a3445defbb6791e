#include "data/desc/functiontable.h"

#include "data/desc/keys.h"
#include "data/desc/parameter.h"
#include "data/desc/valuetype.h"

namespace Ksx::Data::Desc {

namespace {

using ValueType::Bool;
using ValueType::Float1;
using ValueType::Float2;
using ValueType::Float3;
using ValueType::Float4;
using ValueType::Int1;
using ValueType::Int2;
using ValueType::Int3;
using ValueType::Int4;

using FunctionType::AnyFloat;
using FunctionType::AnyFloatVector;
using FunctionType::AnyInt;
using FunctionType::AnyNumber;
using FunctionType::AnyOrNone;
using FunctionType::AnyValue;
using FunctionType::Int1OrAnyFloat;
using FunctionType::Int1OrFloat1;
using FunctionType::List;
using FunctionType::NoOutput;
using FunctionType::String;

using K = FunctionsEnum;

// The generic type of the row; the types that it is one of are added from the row's own column.
constexpr unsigned T = FunctionType::Generic;

constexpr unsigned UpToInt2 = Int1 | Int2;
constexpr unsigned UpToInt3 = UpToInt2 | Int3;
constexpr unsigned UpToFloat2 = Float1 | Float2;
constexpr unsigned UpToFloat3 = UpToFloat2 | Float3;

struct InputRow
{
    const char* identifier; // null behind the last one
    unsigned type;
    unsigned mark = 0; // List or nothing
};

struct DataRow
{
    FunctionData::Role role;
    unsigned type; // 0 if the node holds nothing
};

constexpr DataRow value(unsigned type)
{
    return {FunctionData::Role::Value, type};
}
constexpr DataRow indexes(unsigned type)
{
    return {FunctionData::Role::ComponentIndexes, type};
}
constexpr DataRow imageIndex = {FunctionData::Role::ImageIndex, Int1};
constexpr DataRow variableName = {FunctionData::Role::VariableName, String};
constexpr DataRow nothing = {FunctionData::Role::Value, 0};

struct FunctionRow
{
    FunctionsEnum kind;
    const char* identifier;
    const char* key;
    unsigned output;
    DataRow data;
    unsigned generic;
    InputRow inputs[3];
};

constexpr FunctionRow Rows[] = {
#include "data/desc/functions.inc"
};

// A kind is then an index.
constexpr bool standInTheOrderOfTheirKinds()
{
    unsigned index = 0;
    for (const FunctionRow& row : Rows)
        if (static_cast<unsigned>(row.kind) != index++)
            return false;
    return true;
}
static_assert(standInTheOrderOfTheirKinds());

std::string keyBelow(const FunctionRow& row, const std::string& name)
{
    return std::string(row.key) + '_' + capitals(name);
}

unsigned withGenericSet(unsigned type, const FunctionRow& row)
{
    return (type & FunctionType::Generic) != 0 ? type | row.generic : type;
}

std::vector<FunctionInput> inputsOf(const FunctionRow& row)
{
    std::vector<FunctionInput> inputs;
    for (const InputRow& input : row.inputs) {
        if (!input.identifier)
            break;
        inputs.push_back({input.identifier, keyBelow(row, input.identifier),
                          withGenericSet(input.type, row) | input.mark, input.mark == List});
    }
    return inputs;
}

std::optional<FunctionData> dataOf(const FunctionRow& row)
{
    if (row.data.type == ValueType::Unknown)
        return std::nullopt;
    const std::string name = "datacontent";
    FunctionData data{
        row.data.role, name, keyBelow(row, name), row.data.type, emptyValueOf(row.data.type), {}};
    if (data.role == FunctionData::Role::ComponentIndexes)
        data.extras["valueInterpretation"] = "enum"; // one of the components
    return data;
}

Function functionOf(const FunctionRow& row)
{
    const std::string key = row.key;
    return {row.identifier, static_cast<unsigned>(row.kind), key,         key + "_DESC",
            inputsOf(row),  withGenericSet(row.output, row), row.generic, dataOf(row)};
}

// Returns the type by which functions know values of a type.
unsigned functionTypeOf(unsigned type)
{
    return type == ValueType::String ? FunctionType::String : ValueType::plain(type);
}

} // namespace

FunctionTable::FunctionTable()
{
    m_functions.reserve(std::size(Rows)); // pointers to the elements are handed out
    m_byIdentifier.reserve(std::size(Rows));
    for (const FunctionRow& row : Rows) {
        const Function& function = m_functions.emplace_back(functionOf(row));
        m_list.push_back(&function);
        m_byIdentifier.emplace(function.identifier, &function);
    }
}

FunctionTable::~FunctionTable() = default;

const Function* FunctionTable::find(unsigned kind) const
{
    return kind < m_list.size() ? m_list[kind] : nullptr;
}

const Function* FunctionTable::find(std::string_view identifier) const
{
    const auto found = m_byIdentifier.find(identifier);
    return found == m_byIdentifier.end() ? nullptr : found->second;
}

const Function* FunctionTable::getterOf(unsigned type) const
{
    const Function* const constant = constantOf(type);
    return constant && constant->kind != static_cast<unsigned>(K::ConstString)
               ? find(getterOfConstant(constant->kind))
               : nullptr;
}

const Function* FunctionTable::constantOf(unsigned type) const
{
    switch (functionTypeOf(type)) {
    case FunctionType::String:
        return find(K::ConstString);
    case Bool:
        return find(K::ConstBool);
    case Int1:
        return find(K::ConstInt1);
    case Int2:
        return find(K::ConstInt2);
    case Int3:
        return find(K::ConstInt3);
    case Int4:
        return find(K::ConstInt4);
    case Float1:
        return find(K::ConstFloat1);
    case Float2:
        return find(K::ConstFloat2);
    case Float3:
        return find(K::ConstFloat3);
    case Float4:
        return find(K::ConstFloat4);
    default:
        return nullptr;
    }
}

} // namespace Ksx::Data::Desc
