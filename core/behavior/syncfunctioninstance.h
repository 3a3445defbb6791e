// Keeps instances of functions in step with their functions.
#pragma once

#include "behavior/instanceindex.h"
#include "data/content/function.h"
#include "data/content/paramnode.h"
#include "data/datapointerbox.h"
#include "function/functionpath.h"
#include "ksx/core/datanotifier.h"

namespace Ksx::Core::Behavior {

// When the inputs of a function are edited, the connections of the nodes that are instances of it
// follow; when its type changes, so do theirs. An instance that comes to refer to another function
// takes over its type. In all these cases it loses the connections to inputs that the function
// lacks. All of that is part of the edit. An instance that refers to no open function keeps all that
// it has.
class SyncFunctionInstance final
    : public InstanceBehavior,
      public BehaviorOf<Data::Content::ParamNode, Data::Content::Function>
{
public:
    explicit SyncFunctionInstance(const Data::Content::ParamNode& node);

    static bool concerns(const Data::Content::ParamNode& node) { return isFunctionInstance(node); }
    const Data::Content::ParamNode* node() const { return m_node.get(); }

    std::string_view path() const override;
    void entered(const Data::Content::ParamNode& node, Orv::Core::ManipulatorContext& context);
    void deliver(const Orv::Data::DataMessage& message) override;

    // Remembers what the function looks like and listens to its changes from now on.
    static void watch(const Data::Content::Function& function);

private:
    class FunctionWatcher;

    Orv::Data::DataPointerBox<Data::Content::ParamNode> m_node;
    std::size_t m_pathHash;
};

} // namespace Ksx::Core::Behavior
