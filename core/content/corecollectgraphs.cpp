#include "ksx/core/collectgraphs.h"

#include "data/content/graph.h"
#include "ksx/core/contentwalk.h"

namespace Ksx::Core {

using Data::Content::ContentObjectBase;
using Data::Content::Graph;

std::vector<Orv::Data::DataPointerBox<Graph>> collectGraphs(const Orv::Data::BaseObject& object,
                                                            int depth)
{
    struct Level
    {
        const Orv::Data::ContainerList<ContentObjectBase>* content;
        std::size_t next;
        int depth; // below it
    };
    std::vector<Orv::Data::DataPointerBox<Graph>> graphs;
    std::vector<Level> levels; // and no recursion: files may nest as deep as they like
    if (const auto* content = contentOf(object))
        levels.push_back({content, 0, depth});
    while (!levels.empty()) {
        Level& level = levels.back();
        if (level.next == level.content->size()) {
            levels.pop_back();
            continue;
        }
        const ContentObjectBase& child = level.content->at(level.next++);
        if (const auto* graph = dynamic_cast<const Graph*>(&child))
            graphs.emplace_back(graph);
        const auto* content = contentOf(child);
        if (content == nullptr || (level.depth <= 0 && level.depth != AllDepths))
            continue;
        levels.push_back({content, 0, level.depth == AllDepths ? AllDepths : level.depth - 1});
    }
    return graphs;
}

} // namespace Ksx::Core
