#include "data/container.h"

namespace Orv::Data {

std::unique_ptr<GenericIterator<BaseObject>> Container::createIterator()
{
    return std::make_unique<ContainerIterator>(*this);
}

std::unique_ptr<GenericIteratorConst<BaseObject>> Container::createConstIterator() const
{
    return std::make_unique<ContainerIteratorConst>(*this);
}

ContainerIterator& ContainerIterator::next()
{
    ++m_position;
    return *this;
}

BaseObject* ContainerIterator::get() const
{
    return atEnd() ? nullptr : m_container.childAt(m_position);
}

bool ContainerIterator::atEnd() const
{
    return m_position >= m_container.childCount();
}

ContainerIteratorConst& ContainerIteratorConst::next()
{
    ++m_position;
    return *this;
}

const BaseObject* ContainerIteratorConst::get() const
{
    return atEnd() ? nullptr : m_container.childAt(m_position);
}

bool ContainerIteratorConst::atEnd() const
{
    return m_position >= m_container.childCount();
}

} // namespace Orv::Data
