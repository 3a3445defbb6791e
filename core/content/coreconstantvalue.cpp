#include "content/constantvalue.h"

#include "data/content/constantvalues.h"
#include "data/desc/function.h"
#include "data/desc/valuetype.h"
#include <algorithm>
#include <cmath>
#include <type_traits>

namespace Ksx::Core {

namespace {

namespace Content = Data::Content;
namespace FunctionType = Data::Desc::FunctionType;
namespace ValueType = Data::Desc::ValueType;
using Orv::Data::BaseObject;
using Orv::Data::Float1;
using Orv::Data::Int1;
using Orv::Data::UInt;

// A single number, as the other class that can hold it does.
// clang-format off
UInt otherForm(const Int1& value) { return static_cast<UInt>(value[0]); }
Int1 otherForm(UInt value) { return {{static_cast<int>(value)}}; }
float otherForm(const Float1& value) { return value[0]; }
Float1 otherForm(float value) { return {{value}}; }
// clang-format on

template <class C>
const typename C::ValueType* heldBy(const BaseObject& constant)
{
    const auto* typed = dynamic_cast<const C*>(&constant);
    return typed != nullptr ? &typed->value().get() : nullptr;
}

template <class C, class Other = C>
boost::any read(const BaseObject& constant)
{
    if (const auto* value = heldBy<C>(constant))
        return *value;
    if constexpr (!std::is_same_v<C, Other>)
        if (const auto* value = heldBy<Other>(constant))
            return otherForm(*value);
    return {};
}

template <class C>
std::unique_ptr<BaseObject> make(const boost::any& value)
{
    auto constant = std::make_unique<C>();
    constant->value().assign(boost::any_cast<const typename C::ValueType&>(value));
    return constant;
}

template <class C>
boost::any zero()
{
    return typename C::ValueType{};
}

bool isFinite(float number)
{
    return std::isfinite(number);
}

template <std::size_t N>
bool isFinite(const Orv::Data::Vec<float, N>& vector)
{
    return std::all_of(vector.elements.begin(), vector.elements.end(),
                       [](float number) { return std::isfinite(number); });
}

// Returns true for a value of any other type, too.
template <class T>
bool isFiniteAs(const boost::any& value)
{
    const T* const typed = boost::any_cast<T>(&value);
    return typed == nullptr || isFinite(*typed);
}

// How values of a type are stored.
struct Storage
{
    unsigned type;
    boost::any (*readOwn)(const BaseObject&); // empty for other classes
    boost::any (*read)(const BaseObject&);    // empty for other shapes
    std::unique_ptr<BaseObject> (*make)(const boost::any&);
    boost::any (*zero)();
};

// C is the class that stores the values, Other the other one that can hold them.
template <class C, class Other = C>
constexpr Storage in(unsigned type)
{
    return {type, &read<C>, &read<C, Other>, &make<C>, &zero<C>};
}

constexpr Storage Storages[] = {
#define VALUE_TYPE(name, bit, value, stored, other, ...)                                           \
    in<Content::stored, Content::other>(ValueType::name),
#include "data/desc/valuetypes.inc"
    in<Content::ConstantValueInt32, Content::ConstantValueInt1>(FunctionType::AnyInt),
    in<Content::ConstantValueFloat, Content::ConstantValueFloat1>(FunctionType::AnyFloat),
};

const Storage* storageOf(unsigned type)
{
    const unsigned plain = ValueType::plain(type);
    for (const Storage& storage : Storages)
        if (storage.type == plain)
            return &storage;
    return nullptr;
}

// The type whose values are stored as those of a parameter of `type`.
unsigned storedParameterType(unsigned type)
{
    return type == ValueType::Int1 ? FunctionType::AnyInt : type;
}

} // namespace

bool isStorable(const boost::any& value)
{
    using namespace Orv::Data;
    return isFiniteAs<float>(value) && isFiniteAs<Float1>(value) && isFiniteAs<Float2>(value) &&
           isFiniteAs<Float3>(value) && isFiniteAs<Float4>(value);
}

boost::any valueOfConstant(const BaseObject* constant)
{
    if (constant == nullptr)
        return {};
    boost::any value;
    for (const Storage& storage : Storages) {
        value = storage.readOwn(*constant);
        if (!value.empty())
            break;
    }
    return value;
}

boost::any valueAs(unsigned type, const BaseObject* constant)
{
    const Storage* storage = storageOf(type);
    return constant != nullptr && storage != nullptr ? storage->read(*constant) : boost::any();
}

boost::any parameterValueAs(unsigned type, const BaseObject* constant)
{
    return valueAs(storedParameterType(type), constant);
}

std::unique_ptr<BaseObject> makeConstant(unsigned type, const boost::any& value)
{
    const Storage* storage = storageOf(type);
    return storage != nullptr ? storage->make(value) : nullptr;
}

std::unique_ptr<BaseObject> makeParameterConstant(unsigned type, const boost::any& value)
{
    return makeConstant(storedParameterType(type), value);
}

boost::any zeroOf(unsigned type)
{
    const Storage* storage = storageOf(type);
    return storage != nullptr ? storage->zero() : boost::any();
}

} // namespace Ksx::Core
