#include "data/baseobject.h"

#include "data/shadowobject.h"
#include <QtGlobal>

namespace Orv::Data {

void BaseObject::linkShadow(ShadowLink& link)
{
    Q_ASSERT(!hasShadow());
    link.m_target = this;
    link.m_prevLink = &m_firstBox;
    link.m_next = m_firstBox;
    if (link.m_next != nullptr)
        link.m_next->m_prevLink = &link.m_next;
    m_firstBox = reinterpret_cast<BoxLink*>(
        reinterpret_cast<std::uintptr_t>(static_cast<BoxLink*>(&link)) | 1u);
}

void BaseObject::deleteShadow()
{
    delete shadow();
}

const BaseObject& rootOf(const BaseObject& object)
{
    const BaseObject* root = &object;
    while (root->getParent() != nullptr)
        root = root->getParent();
    return *root;
}

bool isAttached(const BaseObject& object)
{
    return rootOf(object).isTreeRoot();
}

} // namespace Orv::Data
