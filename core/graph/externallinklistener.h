// Tells nodes that refer to content by a path that the path may lead elsewhere.
#pragma once

#include "core/listenersimple.h"
#include "data/containerlist.h"
#include "data/datapointerbox.h"
#include "ksx/core/follow.h"
#include <cstdint>
#include <map>
#include <string>
#include <unordered_map>

namespace Orv::Core {
class ManipulatorContext;
} // namespace Orv::Core

namespace Ksx::Core {

class NodeController;

// One for each list through which paths of nodes lead: the content of a package, a group or a
// graph, or the list of open packages. Found by listenerOf<ExternalLinkListener>(list) and owned by
// the list's shadow. Comes behind the table of open packages, which has to know of them first.
class ExternalLinkListener final : public Orv::Core::ListenerSimple<Stage::Path, ShapeChanges>
{
public:
    using List = Orv::Data::ContainerListBase;
    // What a node gives back to hear no more.
    struct Ticket
    {
        std::string identifier;
        std::uint64_t number;
    };

    explicit ExternalLinkListener(const List& list);
    ~ExternalLinkListener() override;

    // Calls the node's onSubGraphLinkChanged() when an item of the identifier comes, goes or moves,
    // and when an item takes the identifier or gives it up. An empty identifier means that any item
    // comes, goes or moves.
    Ticket subscribe(NodeController& node, const std::string& identifier);
    void unsubscribe(const Ticket& ticket);

    bool isOwnedByShadow() const override { return true; }
    void deliver(const Orv::Data::DataMessage& message) override;

private:
    class IdentifierListener;
    using Nodes = std::map<std::uint64_t, Orv::Data::DataPointerBox<NodeController>>;

    void watch(const Orv::Data::BaseObject& item);
    void tell(const std::string& identifier, Orv::Core::ManipulatorContext* context);

    Orv::Data::DataPointerBox<List> m_list;
    std::unordered_map<std::string, Nodes> m_nodes; // by identifier, in the order of subscription
    std::uint64_t m_lastNumber = 0;
};

} // namespace Ksx::Core
