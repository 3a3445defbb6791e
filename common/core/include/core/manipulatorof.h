// Which manipulator serves which class of objects.
#pragma once

#include "data/attribute.h"
#include "data/containerlist.h"
#include "data/containerstruct.h"
#include "data/containerunion.h"
#include <type_traits>

namespace Orv::Core {

class ManipulatorBaseObject;
class ManipulatorStructBaseObject;
template <class T>
class ManipulatorAttribute;
template <class T>
class ManipulatorList;
template <class T>
class ManipulatorUnion;
template <class T>
class ManipulatorStruct;

namespace Detail {

template <class F, class = void>
struct HasDocumentClass : std::false_type
{};
template <class F>
struct HasDocumentClass<F, std::void_t<typename F::DocumentClass>> : std::true_type
{};

template <class T>
struct Identity // std::common_type would decay, and asks for a complete type
{
    using type = T;
};

template <class F>
auto manipulatorOf()
{
    if constexpr (std::is_base_of_v<Data::AttributeBase, F>)
        return Identity<ManipulatorAttribute<typename F::ValueType>>();
    else if constexpr (std::is_base_of_v<Data::ContainerListBase, F>)
        return Identity<ManipulatorList<typename F::ItemType>>();
    else if constexpr (std::is_base_of_v<Data::ContainerUnionBase, F>)
        return Identity<ManipulatorUnion<typename F::ItemType>>();
    else if constexpr (HasDocumentClass<F>::value)
        return Identity<ManipulatorStruct<typename F::DocumentClass>>();
    else if constexpr (std::is_base_of_v<Data::ContainerStructBase, F>)
        return Identity<ManipulatorStructBaseObject>();
    else
        return Identity<ManipulatorBaseObject>();
}

} // namespace Detail

// The manipulator class for a field, a document class or an item type F, which must be complete.
template <class F>
struct ManipulatorOf
{
    using type = typename decltype(Detail::manipulatorOf<F>())::type;
};

} // namespace Orv::Core
