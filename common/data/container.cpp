#include "data/container.h"

#include <new>
#include <vector>

namespace Orv::Data {

namespace {

// What the deletion that is under way on this thread still has to delete, the next one last.
thread_local std::vector<BaseObject*>* waitingForDeletion = nullptr;

} // namespace

void Container::destroy(BaseObject* const* children, std::size_t count)
{
    std::vector<BaseObject*> waiting;
    const bool isOutermost = waitingForDeletion == nullptr;
    if (isOutermost)
        waitingForDeletion = &waiting;
    for (std::size_t i = count; i-- > 0;) {
        setParent(*children[i], nullptr); // which may be gone when its turn comes
        try {
            waitingForDeletion->push_back(children[i]);
        } catch (const std::bad_alloc&) {
            delete children[i];
        }
    }
    if (!isOutermost)
        return;
    while (!waiting.empty()) {
        const BaseObject* const next = waiting.back();
        waiting.pop_back();
        delete next;
    }
    waitingForDeletion = nullptr;
}

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
