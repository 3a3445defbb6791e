#include "graph/externallinklistener.h"

#include "data/content/contentobjectbase.h"
#include "data/datamessage.h"
#include "ksx/core/edit.h"
#include "ksx/core/listenerof.h"
#include "ksx/core/nodecontroller.h"
#include "ksx/core/stage.h"
#include <utility>
#include <vector>

namespace Ksx::Core {

using Data::Content::ContentInterface;
using Orv::Data::ChangeRun;
using Orv::Data::ChangeType;
using Orv::Data::RunKind;

// On the identifier of an item, whose shadow owns it.
class ExternalLinkListener::IdentifierListener final
    : public Orv::Core::ListenerSimple<Stage::Path, ChangeType::Value | ChangeType::Removed>
{
public:
    using Identifier = Orv::Data::Attribute<Orv::Data::Text>;

    IdentifierListener(ExternalLinkListener& owner, const Identifier& identifier)
        : m_owner(&owner), m_identifier(&identifier), m_former(identifier.get())
    {}
    bool isOwnedByShadow() const override { return true; }
    void deliver(const Orv::Data::DataMessage& message) override
    {
        const std::string former =
            std::exchange(m_former, m_identifier ? m_identifier->get() : std::string());
        Orv::Core::ManipulatorContext* const context = editableContext(message);
        for (const std::string& identifier : {former, m_former})
            if (ExternalLinkListener* owner = identifier.empty() ? nullptr : m_owner.access())
                owner->tell(identifier, context);
    }

private:
    Orv::Data::DataPointerBox<ExternalLinkListener> m_owner;
    Orv::Data::DataPointerBox<Identifier> m_identifier;
    std::string m_former;
};

ExternalLinkListener::ExternalLinkListener(const List& list) : m_list(&list)
{
    for (std::size_t i = 0; i < list.size(); ++i)
        watch(*list.childAt(i));
}

ExternalLinkListener::~ExternalLinkListener() = default;

// Packages are found by their uids, and not by their identifiers.
void ExternalLinkListener::watch(const Orv::Data::BaseObject& item)
{
    const auto* const content = dynamic_cast<const ContentInterface*>(&item);
    if (content == nullptr)
        return;
    const auto& identifier = content->identifierAttribute();
    giveToShadows(std::make_unique<IdentifierListener>(*this, identifier), {&identifier});
}

ExternalLinkListener::Ticket ExternalLinkListener::subscribe(NodeController& node,
                                                             const std::string& identifier)
{
    m_nodes[identifier].emplace(++m_lastNumber, &node);
    return {identifier, m_lastNumber};
}

void ExternalLinkListener::unsubscribe(const Ticket& ticket)
{
    const auto found = m_nodes.find(ticket.identifier);
    if (found != m_nodes.end() && found->second.erase(ticket.number) != 0 && found->second.empty())
        m_nodes.erase(found);
}

void ExternalLinkListener::deliver(const Orv::Data::DataMessage& message)
{
    const List* const list = m_list.get();
    if (list == nullptr)
        return;
    std::vector<std::string> identifiers;
    std::size_t index = 0;
    for (const ChangeRun& run : message.runs.runs()) {
        const bool isNew = run.kind == RunKind::Inserted || run.kind == RunKind::MovedHere;
        for (std::size_t i = index; isNew && i < std::min(index + run.count, list->size()); ++i) {
            const Orv::Data::BaseObject& item = *list->childAt(i);
            if (run.kind == RunKind::Inserted)
                watch(item);
            if (const auto* content = dynamic_cast<const ContentInterface*>(&item))
                identifiers.push_back(content->identifierAttribute().get());
        }
        index += run.inNewList() ? run.count : 0;
    }
    Orv::Core::ManipulatorContext* const context = editableContext(message);
    for (const std::string& identifier : identifiers)
        tell(identifier, context);
    tell({}, context);
}

void ExternalLinkListener::tell(const std::string& identifier,
                                Orv::Core::ManipulatorContext* context)
{
    const auto found = m_nodes.find(identifier);
    if (found == m_nodes.end())
        return;
    const Nodes nodes = found->second; // a node subscribes anew while it is told
    for (const auto& [number, box] : nodes)
        if (NodeController* node = box.access())
            node->onSubGraphLinkChanged(context);
}

} // namespace Ksx::Core
