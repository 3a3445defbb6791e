#include "data/containerunion.h"

namespace Orv::Data {

void ContainerUnionBase::clear()
{
    if (m_child != nullptr)
        destroy(&m_child, 1);
    m_child = nullptr;
}

void ContainerUnionBase::set(std::unique_ptr<BaseObject> child)
{
    if (child.get() == m_child) {
        static_cast<void>(child.release()); // already owned here
        return;
    }
    clear();
    m_child = child.release();
    if (m_child != nullptr)
        setParent(*m_child, this);
}

std::unique_ptr<BaseObject> ContainerUnionBase::takeOwned()
{
    std::unique_ptr<BaseObject> taken(m_child);
    m_child = nullptr;
    if (taken)
        setParent(*taken, nullptr);
    return taken;
}

} // namespace Orv::Data
