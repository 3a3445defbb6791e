#include "graph/contentlink.h"

#include "content/packageof.h"
#include "data/content/package.h"
#include "ksx/core/contentwalk.h"
#include "ksx/core/datapath.h"
#include "ksx/core/listenerof.h"
#include "ksx/core/objecturl.h"

namespace Ksx::Core {

using Data::Content::Package;
using Orv::Data::BaseObject;

const BaseObject* ContentLink::walk(std::string_view path, const BaseObject& from)
{
    release();
    const Package* const own = packageOf(from);
    if (own == nullptr || !DataPath::isDataPath(path))
        return nullptr;
    const DataPath steps(path);
    std::string home = "pkg://";
    if (const auto dependency = steps.parameter(DataPathKey::Dependency))
        home = DataPath::withParameter(home, DataPathKey::Dependency, *dependency);
    const BaseObject* at = resolveObjectUrl(home, *own);
    if (at == nullptr || !isAttached(*at))
        return nullptr;
    for (const std::string& identifier : steps.segments()) {
        const auto* content = at == nullptr ? nullptr : contentOf(*at);
        if (content == nullptr)
            break;
        subscribe(*content, identifier);
        at = findContent(*at, identifier);
    }
    return resolveObjectUrl(path, *own);
}

void ContentLink::awaitPackages(const BaseObject& from)
{
    const Package* const own = packageOf(from);
    if (const auto* packages = own == nullptr ? nullptr : own->getParent())
        subscribe(static_cast<const ExternalLinkListener::List&>(*packages), {});
}

void ContentLink::subscribe(const ExternalLinkListener::List& list, const std::string& identifier)
{
    auto& listener = listenerOf<ExternalLinkListener>(list);
    m_subscriptions.emplace_back(&listener, listener.subscribe(m_node, identifier));
}

void ContentLink::release()
{
    for (const auto& [listener, ticket] : std::exchange(m_subscriptions, {}))
        if (listener)
            listener.access()->unsubscribe(ticket);
}

} // namespace Ksx::Core
