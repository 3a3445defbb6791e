#include "behavior/cachelistener.h"

#include "behavior/instanceindex.h"
#include "behavior/ownerof.h"
#include "behavior/pathtarget.h"
#include "behavior/synccompinstance.h"
#include "content/packageof.h"
#include "data/content/compinstance.h"
#include "data/content/graph.h"
#include <unordered_set>
#include <utility>

namespace Ksx::Core {

using Data::Content::Graph;

CacheData::~CacheData() = default;

void CacheData::drop()
{
    if (std::exchange(m_isCurrent, false))
        dropped();
}

void CacheData::renew()
{
    if (!std::exchange(m_isCurrent, true))
        renewed();
}

CompiledGraphCacheData::CompiledGraphCacheData(const Graph& graph) : m_graph(&graph) {}

const Graph* CompiledGraphCacheData::graph() const
{
    return m_graph.get();
}

std::vector<const Graph*> CacheListenerBase::dependentsOf(const Graph& graph)
{
    using Index = Behavior::InstanceIndexOf<Behavior::SyncCompInstance>;
    std::vector<const Graph*> found{&graph};
    std::unordered_set<const Graph*> known{&graph};
    for (std::size_t next = 0; next < found.size(); ++next) {
        const Graph& shown = *found[next];
        Behavior::PathTarget target(shown);
        for (const Behavior::InstanceBehavior* behavior :
             Index::of(shown).find(shown.identifier().get())) {
            const auto* instance =
                static_cast<const Behavior::SyncCompInstance*>(behavior)->instance();
            const auto* package = instance == nullptr ? nullptr : packageOf(*instance);
            if (package == nullptr || !target.isNamedBy(behavior->path(), *package))
                continue;
            const Graph* owner = Behavior::ownerOf<Graph>(*instance);
            if (owner != nullptr && known.insert(owner).second)
                found.push_back(owner);
        }
    }
    return found;
}

CompiledGraphListener& CompiledGraphListener::of(const Graph& graph)
{
    return listenerOf<CompiledGraphListener>(graph);
}

} // namespace Ksx::Core
