#include "ksx/core/contentwalk.h"

#include "data/content/graph.h"
#include "data/content/group.h"
#include "data/content/package.h"
#include "editing/keyindex.h"
#include <cstddef>
#include <vector>

namespace Ksx::Core {

using namespace Data::Content;
using ContentList = Orv::Data::ContainerList<ContentObjectBase>;

namespace {

struct ContentKey
{
    using Type = std::string;
    static const Orv::Data::Attribute<Type>& of(const ContentObjectBase& item)
    {
        return dynamic_cast<const ContentInterface&>(item).identifierAttribute();
    }
};

} // namespace

const ContentList* contentOf(const Orv::Data::BaseObject& object)
{
    if (const auto* package = dynamic_cast<const Package*>(&object))
        return &package->content();
    if (const auto* group = dynamic_cast<const Group*>(&object))
        return &group->content();
    if (const auto* graph = dynamic_cast<const Graph*>(&object))
        return &graph->content();
    return nullptr;
}

const ContentObjectBase* findContent(const Orv::Data::BaseObject& owner,
                                     const std::string& identifier)
{
    const ContentList* content = contentOf(owner);
    return content == nullptr ? nullptr
                              : KeyIndex<ContentObjectBase, ContentKey>::find(*content, identifier);
}

void visitContent(const Package& package,
                  const std::function<void(const ContentObjectBase&)>& visit)
{
    struct Level
    {
        const ContentList* list;
        std::size_t next;
    };
    std::vector<Level> levels{{&package.content(), 0}};
    while (!levels.empty()) {
        Level& level = levels.back();
        if (level.next == level.list->size()) {
            levels.pop_back();
            continue;
        }
        const ContentObjectBase& object = level.list->at(level.next++);
        visit(object);
        if (const ContentList* content = contentOf(object))
            levels.push_back({content, 0});
    }
}

void visitContent(Package& package, const std::function<void(ContentObjectBase&)>& visit)
{
    visitContent(static_cast<const Package&>(package), [&](const ContentObjectBase& object) {
        visit(const_cast<ContentObjectBase&>(object)); // the package is not const
    });
}

} // namespace Ksx::Core
