#include "content/contentuids.h"

#include "data/content/package.h"
#include "data/shadowobject.h"
#include "ksx/core/contentwalk.h"
#include "ksx/core/listenerof.h"
#include <vector>

namespace Ksx::Core {

using namespace Data::Content;
using Orv::Data::BaseObject;
using Orv::Data::ChangeType;
using Orv::Data::DataMessage;

namespace {

// Calls `visit` for the object and all that stands in it, however deep.
template <class Visit>
void visitWithContent(const ContentObjectBase& object, const Visit& visit)
{
    std::vector<const ContentObjectBase*> waiting{&object};
    while (!waiting.empty()) {
        const ContentObjectBase& next = *waiting.back();
        waiting.pop_back();
        visit(next);
        if (const auto* list = contentOf(next))
            for (const ContentObjectBase& inner : *list)
                waiting.push_back(&inner);
    }
}

} // namespace

ContentUids::ContentUids(const Package& package)
{
    refill(package);
}

ContentUids* ContentUids::of(const Package& package)
{
    const Orv::Data::ShadowObject* const shadow = package.shadow();
    if (!isAttached(package) || (shadow != nullptr && shadow->hasPending()))
        return nullptr;
    ContentUids& found = listenerOf<ContentUids>(package);
    if (found.m_isStale)
        found.refill(package);
    return &found;
}

void ContentUids::refill(const Package& package)
{
    m_uids.clear();
    m_counts.clear();
    m_isStale = false;
    m_listListener.emplace(*this); // the former one is on no list now
    listenTo(package.content(), *m_listListener);
    for (const ContentObjectBase& object : package.content())
        enter(object);
}

void ContentUids::deliver(const DataMessage&) {}

void ContentUids::follow(const DataMessage& message)
{
    const BaseObject* const list =
        message.type == ChangeType::Removed ? nullptr : message.object.get();
    for (const Orv::Data::TouchedChild& touched : message.touched) {
        const auto* const object = static_cast<const ContentObjectBase*>(touched.object.get());
        const bool isThere = object != nullptr && list != nullptr && object->getParent() == list;
        const bool isKnown = m_uids.contains(touched.address);
        if (object == nullptr)
            m_isStale = m_isStale || isKnown;
        else if (isKnown && !isThere)
            leave(*object);
        else if (isKnown)
            add(object, dynamic_cast<const ContentInterface&>(*object).uidAttribute().get());
        else if (isThere)
            enter(*object);
    }
}

void ContentUids::enter(const ContentObjectBase& object)
{
    visitWithContent(object, [this](const ContentObjectBase& one) {
        if (const auto* content = dynamic_cast<const ContentInterface*>(&one))
            add(&one, content->uidAttribute().get());
        if (const auto* list = contentOf(one))
            listenTo(*list, *m_listListener);
    });
}

void ContentUids::leave(const ContentObjectBase& object)
{
    visitWithContent(object, [this](const ContentObjectBase& one) { remove(&one); });
}

void ContentUids::add(const BaseObject* object, Uid uid)
{
    const auto known = m_uids.find(object);
    if (known != m_uids.end() && known->value == uid)
        return;
    remove(object);
    m_uids.emplace(object, uid);
    ++m_counts[uid];
}

void ContentUids::remove(const BaseObject* object)
{
    const auto known = m_uids.find(object);
    if (known == m_uids.end())
        return;
    const auto count = m_counts.find(known->value);
    if (--count->value == 0)
        m_counts.erase(count);
    m_uids.erase(known);
}

} // namespace Ksx::Core
