// Writes the unions of a document.
#pragma once

#include "core/manipulatorbase.h"
#include "core/manipulatorof.h"
#include "data/containerunion.h"
#include <QtGlobal>
#include <memory>

namespace Orv::Core {

// A union whose child type is not known. A child that leaves is owned by the history.
class ManipulatorUnionBase : public ManipulatorBase
{
public:
    using ManipulatorBase::ManipulatorBase;
    const Data::ContainerUnionBase* alternatives() const
    {
        return static_cast<const Data::ContainerUnionBase*>(getData());
    }
    // Null empties the union; nothing at all when it is empty already.
    void set(std::unique_ptr<Data::BaseObject> child);
};

// A child of the common base type T.
template <class T>
class ManipulatorUnion final : public ManipulatorUnionBase
{
public:
    using DataType = Data::ContainerUnion<T>;

    ManipulatorUnion(const DataType& alternatives, ManipulatorContext& context)
        : ManipulatorUnionBase(alternatives, context)
    {}
    std::unique_ptr<ManipulatorFactoryBase> createFactory() const override
    {
        return std::make_unique<ManipulatorFactory<ManipulatorUnion>>();
    }
    const DataType* get() const { return static_cast<const DataType*>(getData()); }

    // A manipulator on the child, which must be of class C.
    template <class C>
    typename ManipulatorOf<C>::type child() const
    {
        Q_ASSERT(dynamic_cast<const C*>(get()->get()) != nullptr);
        return typename ManipulatorOf<C>::type(static_cast<const C&>(*get()->get()), context());
    }
};

} // namespace Orv::Core
