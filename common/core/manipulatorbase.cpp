#include "core/manipulatorbase.h"

#include "data/baseobject.h"

namespace Orv::Core {

void ManipulatorBase::addListener(Data::ListenerBase& listener) const
{
    m_context->addListener(object(), listener);
}

bool ManipulatorBase::removeListener(const Data::ListenerBase& listener) const
{
    return m_context->removeListener(object(), listener);
}

void ManipulatorBase::notify(std::uint32_t type, const Data::ChangeRuns& runs,
                             const Data::ChildrenSpan& children) const
{
    m_context->notify(object(), type, runs, children);
}

void ManipulatorBase::notifyRemoved(const Data::BaseObject& removed) const
{
    m_context->notifyRemoved(const_cast<Data::BaseObject&>(removed));
}

void ManipulatorBase::noteInserted(const Data::BaseObject& inserted) const
{
    if (!m_context->isRollback()) // what a rollback puts back has never left
        m_context->noteInserted(inserted);
}

} // namespace Orv::Core
