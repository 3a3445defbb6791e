// Visits every object of a tree.
#pragma once

#include "data/container.h"
#include <utility>
#include <vector>

namespace Orv::Data {

// Calls `visit(object)` for `root` and everything below it, parents first, children in order. The
// depth of the tree costs memory and no stack. `visit` must not change the tree's shape.
template <class Object, class Visitor>
void visitTree(Object& root, Visitor&& visit)
{
    using ContainerType = std::remove_reference_t<decltype(*root.asContainer())>;
    struct Level
    {
        ContainerType* container;
        std::size_t count;
        std::size_t next;
    };
    visit(root);
    ContainerType* top = root.asContainer();
    if (top == nullptr)
        return;
    std::vector<Level> levels{{top, top->childCount(), 0}};
    while (!levels.empty()) {
        Level& level = levels.back();
        if (level.next == level.count) {
            levels.pop_back();
            continue;
        }
        auto* child = level.container->childAt(level.next++);
        visit(*child);
        if (ContainerType* container = child->asContainer())
            levels.push_back({container, container->childCount(), 0});
    }
}

} // namespace Orv::Data
