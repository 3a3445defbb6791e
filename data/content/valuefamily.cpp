// The document classes of the value family: one source, since sixty would be dear to compile.
#include "data/content/constantvalues.h"
#include "data/content/valueclasses.h"

namespace Ksx::Data::Content {

// offsetof is conditionally supported for such structures: g++ and clang++ support it wherever no
// virtual base is involved, and only warn.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

template <class T>
StructType<T>::ValueOverloadMembers::ValueOverloadMembers(ContainerStructBase& owner)
{
    owner.adopt(value);
    owner.adopt(configurations);
}

template <class T>
StructType<T>::ValueOverloadMembers::~ValueOverloadMembers() = default;

template <class T>
const Orv::Data::MemberRow StructType<T>::ValueOverloadMembers::rows[] = {
    {offsetof(ValueOverloadMembers, value), &valueMeta2_::record},
    {offsetof(ValueOverloadMembers, configurations), &configurationsMeta_::record},
};

template <class T>
const std::size_t StructType<T>::ValueOverloadMembers::rowCount = 2;

template <class T>
StructType<T>::ValueOverload::ValueOverload() = default;

template <class T>
StructType<T>::ValueOverload::~ValueOverload() = default;

template <class T>
StructType<T>::ValueOverloadableMembers::ValueOverloadableMembers(ContainerStructBase& owner)
{
    owner.adopt(value);
    owner.adopt(valueOverloads);
}

template <class T>
StructType<T>::ValueOverloadableMembers::~ValueOverloadableMembers() = default;

template <class T>
const Orv::Data::MemberRow StructType<T>::ValueOverloadableMembers::rows[] = {
    {offsetof(ValueOverloadableMembers, value), &valueMeta_::record},
    {offsetof(ValueOverloadableMembers, valueOverloads), &valueOverloadsMeta_::record},
};

template <class T>
const std::size_t StructType<T>::ValueOverloadableMembers::rowCount = 2;

template <class T>
ValueOverloadable<T>::ValueOverloadable() = default;

template <class T>
ValueOverloadable<T>::~ValueOverloadable() = default;

#pragma GCC diagnostic pop

#define ORV_INSTANTIATE(type)                                                                      \
    template struct StructType<type>;                                                              \
    template class ValueOverloadable<type>;
ORV_INSTANTIATE(Text)
ORV_INSTANTIATE(bool)
ORV_INSTANTIATE(UInt)
ORV_INSTANTIATE(float)
ORV_INSTANTIATE(Float1)
ORV_INSTANTIATE(Float2)
ORV_INSTANTIATE(Float3)
ORV_INSTANTIATE(Float4)
ORV_INSTANTIATE(Int1)
ORV_INSTANTIATE(Int2)
ORV_INSTANTIATE(Int3)
ORV_INSTANTIATE(Int4)
#undef ORV_INSTANTIATE

#define ORV_DEFINE(name)                                                                           \
    name::name() = default;                                                                        \
    name::~name() = default;
ORV_DEFINE(ConstantValueString)
ORV_DEFINE(ConstantValueBool)
ORV_DEFINE(ConstantValueInt32)
ORV_DEFINE(ConstantValueFloat)
ORV_DEFINE(ConstantValueFloat1)
ORV_DEFINE(ConstantValueFloat2)
ORV_DEFINE(ConstantValueFloat3)
ORV_DEFINE(ConstantValueFloat4)
ORV_DEFINE(ConstantValueInt1)
ORV_DEFINE(ConstantValueInt2)
ORV_DEFINE(ConstantValueInt3)
ORV_DEFINE(ConstantValueInt4)
ORV_DEFINE(Path)
ORV_DEFINE(Type)
ORV_DEFINE(CompType)
ORV_DEFINE(Format)
ORV_DEFINE(Disabled)
ORV_DEFINE(ConnRef)
ORV_DEFINE(ConnRefOutput)
ORV_DEFINE(RootNode)
#undef ORV_DEFINE

} // namespace Ksx::Data::Content
