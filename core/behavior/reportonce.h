// One report where an object is heard of at several places.
#pragma once

#include "data/baseobject.h"
#include "data/datamessage.h"
#include "data/datapointerbox.h"
#include "data/manipulatorcontextbase.h"

namespace Ksx::Core::Behavior {

// For what stays as it is until the change has been told to everybody, as after an undo.
class ReportOnce
{
public:
    // False if it was asked for this object in this change just before.
    bool isDue(const Orv::Data::DataMessage& message, const Orv::Data::BaseObject& object)
    {
        const bool isKnown = m_context == message.context && m_object == &object;
        m_context = message.context;
        m_object.reset(&object);
        return !isKnown;
    }

private:
    Orv::Data::DataPointerBox<Orv::Data::ManipulatorContextBase> m_context;
    Orv::Data::DataPointerBox<Orv::Data::BaseObject> m_object;
};

} // namespace Ksx::Core::Behavior
