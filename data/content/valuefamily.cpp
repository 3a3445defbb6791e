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

#define ATTRIBUTE_TYPE(type)                                                                       \
    template struct StructType<type>;                                                              \
    template class ValueOverloadable<type>;
#include "data/attributetypes.inc"

ORV_DEFINE_CLASS(ConstantValueString)
ORV_DEFINE_CLASS(ConstantValueBool)
ORV_DEFINE_CLASS(ConstantValueInt32)
ORV_DEFINE_CLASS(ConstantValueFloat)
ORV_DEFINE_CLASS(ConstantValueFloat1)
ORV_DEFINE_CLASS(ConstantValueFloat2)
ORV_DEFINE_CLASS(ConstantValueFloat3)
ORV_DEFINE_CLASS(ConstantValueFloat4)
ORV_DEFINE_CLASS(ConstantValueInt1)
ORV_DEFINE_CLASS(ConstantValueInt2)
ORV_DEFINE_CLASS(ConstantValueInt3)
ORV_DEFINE_CLASS(ConstantValueInt4)
ORV_DEFINE_CLASS(Path)
ORV_DEFINE_CLASS(Type)
ORV_DEFINE_CLASS(CompType)
ORV_DEFINE_CLASS(Format)
ORV_DEFINE_CLASS(Disabled)
ORV_DEFINE_CLASS(ConnRef)
ORV_DEFINE_CLASS(ConnRefOutput)
ORV_DEFINE_CLASS(RootNode)

} // namespace Ksx::Data::Content
