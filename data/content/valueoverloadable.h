// Values that may be overridden per configuration.
#pragma once

#include "data/content/types.h"
#include "data/declaration.h"

namespace Ksx::Data::Content {

template <class T>
class ValueOverloadable;

// The declarations for one value type T, one of the twelve attribute types.
template <class T>
struct StructType
{
    struct valueMeta_
    {
        static constexpr Orv::Data::ObjectMeta record = Orv::Data::makeMeta("value", Required);
    };
    struct valueOverloadsMeta_
    {
        static constexpr Orv::Data::ObjectMeta record =
            Orv::Data::makeMeta("valueOverloads", Optional);
    };
    struct valueOverloadMeta_
    {
        static constexpr Orv::Data::ObjectMeta record =
            Orv::Data::makeMeta("valueOverload", Required);
    };
    struct valueMeta2_
    {
        static constexpr Orv::Data::ObjectMeta record = Orv::Data::makeMeta("value", Required);
    };
    struct configurationsMeta_
    {
        static constexpr Orv::Data::ObjectMeta record =
            Orv::Data::makeMeta("configurations", Required);
    };

    struct ValueOverloadMembers
    {
        explicit ValueOverloadMembers(ContainerStructBase& owner);
        ~ValueOverloadMembers();
        static const Orv::Data::MemberRow rows[];
        static const std::size_t rowCount;
        Orv::Data::MetaBinder<Orv::Data::Attribute<T>, valueMeta2_> value; // in force there
        Orv::Data::MetaBinder<Orv::Data::Attribute<Text>, configurationsMeta_> configurations;
    };

    // One override. The text of `configurations` is kept as it is.
    class ValueOverload final
        : public Orv::Data::MetaBinder<
              Orv::Data::ContainerStruct<ValueOverloadMembers, ContainerStructBase>,
              valueOverloadMeta_>
    {
    public:
        using DocumentClass = ValueOverload;
        ValueOverload();
        ~ValueOverload() override;
        const auto& value() const { return this->m_members.value; }
        auto& value() { return this->m_members.value; }
        const auto& configurations() const { return this->m_members.configurations; }
        auto& configurations() { return this->m_members.configurations; }
    };

    struct ValueOverloadableMembers
    {
        explicit ValueOverloadableMembers(ContainerStructBase& owner);
        ~ValueOverloadableMembers();
        static const Orv::Data::MemberRow rows[];
        static const std::size_t rowCount;
        Orv::Data::MetaBinder<Orv::Data::Attribute<T>, valueMeta_> value; // without overloads
        Orv::Data::ChildValueTypeBinder<
            Orv::Data::MetaBinder<Orv::Data::ContainerList<ValueOverload>, valueOverloadsMeta_>>
            valueOverloads;
    };
};

// Without a name of its own: a class or a member binds it under one.
template <class T>
class ValueOverloadable
    : public Orv::Data::ContainerStruct<typename StructType<T>::ValueOverloadableMembers,
                                        ContainerStructBase>
{
public:
    using DocumentClass = ValueOverloadable<T>;
    using ValueType = T;
    using ValueOverload = typename StructType<T>::ValueOverload;

    const auto& value() const { return this->m_members.value; }
    auto& value() { return this->m_members.value; }
    const auto& valueOverloads() const { return this->m_members.valueOverloads; }
    auto& valueOverloads() { return this->m_members.valueOverloads; }

protected:
    ValueOverloadable();
    ~ValueOverloadable() override;
};

#define ATTRIBUTE_TYPE(type)                                                                       \
    extern template struct StructType<type>;                                                       \
    extern template class ValueOverloadable<type>;
#include "data/attributetypes.inc"

} // namespace Ksx::Data::Content
