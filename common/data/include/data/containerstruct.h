// Structures: a fixed set of named members, embedded by value.
#pragma once

#include "data/container.h"
#include <cstddef>

namespace Orv::Data {

// Where one member lies in its structure's fields, and its declaration.
struct MemberRow
{
    std::size_t offset; // of the member's object, in bytes from the begin of the fields
    const ObjectMeta* meta;
};

// The members of one structure object, in the order of declaration and so of writing.
struct MemberSpan
{
    const std::byte* fields;
    const MemberRow* rows;
    std::size_t count;

    const BaseObject* object(std::size_t index) const
    {
        // BaseObject is the first base of every field, hence at the field's own address.
        return reinterpret_cast<const BaseObject*>(fields + rows[index].offset);
    }
};

class ContainerStructBase : public Container
{
public:
    // A structure has at most this many members: readers keep the pending ones in one word.
    static constexpr std::size_t MaximumMembers = 64;

    ObjectKind kind() const override { return ObjectKind::Struct; }

    using Container::childAt;
    std::size_t childCount() const override { return members().count; }
    const BaseObject* childAt(std::size_t index) const override { return members().object(index); }
    // True as soon as one member is modified; false without members.
    bool isModified() const override;

    virtual MemberSpan members() const = 0;

    // For the constructors of the members' structures.
    void adopt(BaseObject& member) { setParent(member, this); }
};

// A concrete structure. `Members` is a plain structure of fields that is constructed with its
// owner, adopts each field and names the table of its rows (`Members::rows`, `Members::rowCount`);
// declaremembers.inc writes it. `Base` is ContainerStructBase or a class derived from it.
template <class Members, class Base = ContainerStructBase>
class ContainerStruct : public Base
{
public:
    MemberSpan members() const override
    {
        return {reinterpret_cast<const std::byte*>(&m_members), Members::rows, Members::rowCount};
    }

protected:
    ContainerStruct() : m_members(*this) {}

    Members m_members;
};

} // namespace Orv::Data
