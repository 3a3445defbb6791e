// A member function as the target of a ListenerBridge.
#pragma once

#include "data/datapointerbox.h"

namespace Orv::Data {
struct DataMessage;
} // namespace Orv::Data

namespace Orv::Core {

// Calls a member function of an object as long as the object lives, and does nothing afterwards: so
// a connection may stay behind. `Class` derives from SecuredObject and is no document class.
template <class Class, class Arg>
class ListenerSlot
{
public:
    using Member = void (Class::*)(const Data::DataMessage&, Arg);

    ListenerSlot(Class& object, Member member) : m_object(&object), m_member(member) {}

    void operator()(const Data::DataMessage& message, Arg argument) const
    {
        if (Class* object = m_object.access())
            (object->*m_member)(message, argument);
    }

private:
    Data::DataPointerBox<Class> m_object;
    Member m_member;
};

} // namespace Orv::Core
