// The link of a node to the content that its data path names.
#pragma once

#include "data/baseobject.h"
#include "graph/externallinklistener.h"
#include <string_view>
#include <utility>
#include <vector>

namespace Ksx::Core {

// Owned by the node. Keeps the node informed for as long as the path stays the same.
class ContentLink
{
public:
    explicit ContentLink(NodeController& node) : m_node(node) {}
    ContentLink(const ContentLink&) = delete;
    ContentLink& operator=(const ContentLink&) = delete;
    ~ContentLink() { release(); }

    // Returns the T to which the path leads from an object of a package. Returns null for a T that
    // leaves the document, and where there is none. From now on the node's onSubGraphLinkChanged()
    // is called when the path may lead elsewhere; the end of a T is for the node to watch.
    template <class T>
    const T* follow(std::string_view path, const Orv::Data::BaseObject& from)
    {
        const T* const found = dynamic_cast<const T*>(walk(path, from));
        if (found != nullptr && isAttached(*found))
            return found;
        awaitPackages(from);
        return nullptr;
    }

private:
    const Orv::Data::BaseObject* walk(std::string_view path, const Orv::Data::BaseObject& from);
    void awaitPackages(const Orv::Data::BaseObject& from);
    void subscribe(const ExternalLinkListener::List& list, const std::string& identifier);
    void release();

    NodeController& m_node;
    std::vector<
        std::pair<Orv::Data::DataPointerBox<ExternalLinkListener>, ExternalLinkListener::Ticket>>
        m_subscriptions;
};

} // namespace Ksx::Core
