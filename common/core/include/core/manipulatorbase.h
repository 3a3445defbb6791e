// What all manipulators share: the object, the context and the way to make one like it later.
#pragma once

#include "core/manipulatorcontext.h"
#include "data/baseobject.h"
#include "data/changeruns.h"
#include "data/datapointerbox.h"
#include "data/listenerbase.h"
#include <cstdint>
#include <exception>
#include <memory>

namespace Orv::Core {

// A list position that does not exist.
class ExceptionOutOfBounds : public std::exception
{
public:
    const char* what() const noexcept override { return "out of bounds"; }
};

class ManipulatorBase;

// Remembers how to make a manipulator of a certain class, without an object or a context.
class ManipulatorFactoryBase
{
public:
    virtual ~ManipulatorFactoryBase() = default;
    virtual std::unique_ptr<ManipulatorBase> create(const Data::BaseObject& object,
                                                    ManipulatorContext& context) const = 0;
};

// The one way to change an attached tree: a short-lived value on one object in one context. Each
// write records its inverse in the context's history, changes the object and posts an event. A
// manipulator whose object has died answers null and must not be used for writing.
class ManipulatorBase
{
public:
    virtual ~ManipulatorBase() = default;
    virtual std::unique_ptr<ManipulatorFactoryBase> createFactory() const = 0;
    // The object, null once it has died.
    const Data::BaseObject* getData() const { return m_object.get(); }
    ManipulatorContext& context() const { return *m_context; }

    // Attaches a listener to the object, and takes it off again (false if it is not there).
    void addListener(Data::ListenerBase& listener) const;
    bool removeListener(const Data::ListenerBase& listener) const;

protected:
    ManipulatorBase(const Data::BaseObject& object, ManipulatorContext& context)
        : m_context(&context), m_object(&object)
    {}
    ManipulatorBase(const ManipulatorBase&) = default;
    ManipulatorBase& operator=(const ManipulatorBase&) = default;

    HistoryScratch& scratch() const { return m_context->scratch(); }
    // Being made in a context is the leave to write.
    Data::BaseObject& object() const { return const_cast<Data::BaseObject&>(*m_object); }
    void notify(std::uint32_t type, const Data::ChangeRuns& runs,
                const Data::ChildrenSpan& children = {}) const;
    void notifyRemoved(const Data::BaseObject& removed) const;
    void noteInserted(const Data::BaseObject& inserted) const;

private:
    ManipulatorContext* m_context;
    Data::DataPointerBox<Data::BaseObject> m_object;
};

// Makes an M. M names the class of its objects `DataType`.
template <class M>
class ManipulatorFactory final : public ManipulatorFactoryBase
{
public:
    std::unique_ptr<ManipulatorBase> create(const Data::BaseObject& object,
                                            ManipulatorContext& context) const override
    {
        return std::make_unique<M>(static_cast<const typename M::DataType&>(object), context);
    }
};

// For any object: listeners, and nothing to write.
class ManipulatorBaseObject : public ManipulatorBase
{
public:
    using DataType = Data::BaseObject;
    ManipulatorBaseObject(const Data::BaseObject& object, ManipulatorContext& context)
        : ManipulatorBase(object, context)
    {}
    std::unique_ptr<ManipulatorFactoryBase> createFactory() const override
    {
        return std::make_unique<ManipulatorFactory<ManipulatorBaseObject>>();
    }
    const Data::BaseObject* get() const { return getData(); }
};

} // namespace Orv::Core
