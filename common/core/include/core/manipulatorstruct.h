// Writes the structures of a document, through their members.
#pragma once

#include "core/manipulatorattribute.h"
#include "core/manipulatorbase.h"
#include "core/manipulatorlist.h"
#include "core/manipulatorof.h"
#include "core/manipulatorunion.h"
#include "data/containerstruct.h"

namespace Orv::Core {

class ManipulatorStructBase : public ManipulatorBase
{
public:
    using ManipulatorBase::ManipulatorBase;
};

// Any structure: its object and listeners, no members.
class ManipulatorStructBaseObject final : public ManipulatorStructBase
{
public:
    using DataType = Data::ContainerStructBase;
    ManipulatorStructBaseObject(const DataType& structure, ManipulatorContext& context)
        : ManipulatorStructBase(structure, context)
    {}
    std::unique_ptr<ManipulatorFactoryBase> createFactory() const override
    {
        return std::make_unique<ManipulatorFactory<ManipulatorStructBaseObject>>();
    }
    const DataType* get() const { return static_cast<const DataType*>(getData()); }
};

// What the manipulators of all document classes share; the getters, one per member, are added by
// declaremanipulator.inc from the class's member table.
template <class T>
class ManipulatorStructOf : public ManipulatorStructBase
{
public:
    using DataType = T;
    ManipulatorStructOf(const T& structure, ManipulatorContext& context)
        : ManipulatorStructBase(structure, context)
    {}
    std::unique_ptr<ManipulatorFactoryBase> createFactory() const override
    {
        return std::make_unique<ManipulatorFactory<ManipulatorStruct<T>>>();
    }
    // The object, null once it has died.
    const T* get() const { return static_cast<const T*>(getData()); }

protected:
    template <class F>
    typename ManipulatorOf<F>::type member(const F& field) const
    {
        return typename ManipulatorOf<F>::type(field, context());
    }
};

// Defined per document class, in the header of the class.
template <class T>
class ManipulatorStruct;

} // namespace Orv::Core
