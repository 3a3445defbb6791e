#include "data/desc/function.h"

#include "data/desc/valuetype.h"
#include <algorithm>

namespace Ksx::Data::Desc {

namespace {

constexpr unsigned FirstGetter = static_cast<unsigned>(FunctionsEnum::GetBool);
constexpr unsigned LastGetter = static_cast<unsigned>(FunctionsEnum::GetFloat4);
// Getters and constants stand in the same order of types.
constexpr unsigned GetterToConstant = static_cast<unsigned>(FunctionsEnum::ConstBool) - FirstGetter;

unsigned typeAt(const std::vector<unsigned>& fed, std::size_t index)
{
    return index < fed.size() ? fed[index] : ValueType::Unknown;
}

} // namespace

bool FunctionType::includes(unsigned types, unsigned type)
{
    if (type == NoOutput)
        return types == NoOutput || (types & AnyOrNone) == AnyOrNone;
    return type != ValueType::Unknown && (types & AnyValue & type) == type;
}

const FunctionInput* Function::input(const std::string& name) const
{
    const auto found = std::find_if(inputs.begin(), inputs.end(), [&](const FunctionInput& input) {
        return input.identifier == name;
    });
    return found == inputs.end() ? nullptr : &*found;
}

unsigned Function::acceptedTypes(std::size_t index, const std::vector<unsigned>& fed) const
{
    const FunctionInput& input = inputs[index];
    if (!input.isGeneric())
        return input.type;
    for (std::size_t i = 0; i < inputs.size(); ++i)
        if (i != index && inputs[i].isGeneric() &&
            FunctionType::includes(genericTypes, typeAt(fed, i)))
            return typeAt(fed, i);
    return genericTypes;
}

bool Function::accepts(std::size_t index, unsigned type, const std::vector<unsigned>& fed) const
{
    return FunctionType::includes(acceptedTypes(index, fed), type);
}

unsigned Function::outputTypeFor(const std::vector<unsigned>& fed) const
{
    if (!hasOutput())
        return FunctionType::NoOutput;
    if ((outputType & FunctionType::Generic) == 0)
        return outputType == FunctionType::AnyValue ? ValueType::Unknown : outputType;
    unsigned type = ValueType::Unknown;
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        const unsigned other = typeAt(fed, i);
        if (!inputs[i].isGeneric() || other == ValueType::Unknown)
            continue;
        if (!FunctionType::includes(genericTypes, other) ||
            (type != ValueType::Unknown && other != type))
            return ValueType::Unknown;
        type = other;
    }
    return type;
}

bool isTypedGetter(unsigned kind)
{
    return kind >= FirstGetter && kind <= LastGetter;
}

unsigned constantOfGetter(unsigned getterKind)
{
    return getterKind + GetterToConstant;
}

unsigned getterOfConstant(unsigned constantKind)
{
    return constantKind - GetterToConstant;
}

} // namespace Ksx::Data::Desc
