#include "graph/connexionslistener.h"

#include "data/content/connexion.h"
#include "data/datamessage.h"
#include "data/shadowobject.h"
#include "ksx/core/edit.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/nodecontroller.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "ksx/core/places.h"
#include <algorithm>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Ksx::Core {

using Data::Content::Connexion;

void ConnexionsListener::follow(const List& list)
{
    for (const Connexion& connexion : list)
        m_connections.pushBack(std::make_unique<ConnectionController>(connexion, m_node));
    listenTo(list, *this);
}

void ConnexionsListener::refreshAll(Orv::Core::ManipulatorContext* context)
{
    for (const auto& connection : m_connections)
        connection->refresh(context);
}

ConnectionController* ConnexionsListener::find(const ConnectorController& input,
                                               const ConnectorController& output) const
{
    const bool isInputShorter = input.connections().size() <= output.connections().size();
    std::size_t first = m_connections.size();
    for (const ConnectionController* connection : (isInputShorter ? input : output).connections())
        if (connection->input() == &input && connection->output() == &output)
            first = std::min(first, m_connections.indexOf(connection));
    return first == m_connections.size() ? nullptr : m_connections[first].get();
}

void ConnexionsListener::deliver(const Orv::Data::DataMessage& message)
{
    const auto* list = static_cast<const List*>(message.object.get());
    if (list == nullptr)
        return;
    const bool isLate = m_isAhead; // what the script tells is here already
    m_isAhead = list->shadow() != nullptr && list->shadow()->hasPending();
    if (!isLate && !m_isAhead && isPlain(message.runs, list->size()))
        followRuns(message, *list);
    else
        rearrange(message, *list);
}

// Can the script be followed step by step: without moves, and from the state that is held?
bool ConnexionsListener::isPlain(const Orv::Data::ChangeRuns& runs, std::size_t size) const
{
    std::size_t expected = m_connections.size();
    for (const Orv::Data::ChangeRun& run : runs.runs()) {
        if (run.link != 0 || run.kind == Orv::Data::RunKind::Changed)
            return false;
        expected += run.kind == Orv::Data::RunKind::Inserted ? run.count : 0;
        expected -= run.kind == Orv::Data::RunKind::Erased ? run.count : 0;
    }
    return expected == size;
}

// Those that leave let go of their ends before others take them. Who hears of it may edit the list,
// so that this has been read by then.
void ConnexionsListener::followRuns(const Orv::Data::DataMessage& message, const List& list)
{
    std::vector<std::size_t> gone;
    std::vector<std::size_t> added;
    std::vector<std::unique_ptr<ConnectionController>> made;
    std::size_t former = 0;
    std::size_t place = 0;
    for (const Orv::Data::ChangeRun& run : message.runs.runs()) {
        for (std::size_t i = 0; run.kind == Orv::Data::RunKind::Erased && i < run.count; ++i)
            gone.push_back(former + i);
        for (std::size_t i = 0; run.kind == Orv::Data::RunKind::Inserted && i < run.count; ++i) {
            added.push_back(place + i);
            made.push_back(std::make_unique<ConnectionController>(list.at(place + i), m_node));
        }
        former += run.inOldList() ? run.count : 0;
        place += run.inNewList() ? run.count : 0;
    }
    auto leaving = takeFrom(m_connections, gone);
    putInto(m_connections, added, std::move(made));
    std::vector<ConnectionController*> fresh;
    fresh.reserve(added.size());
    for (const std::size_t index : added)
        fresh.push_back(m_connections[index].get());
    const bool isShapeAlone = (message.type & Orv::Data::ChangeType::Descendant) == 0;
    for (const Orv::Data::TouchedChild& child : message.touched)
        if (!isShapeAlone && child.object && child.object->getParent() == &list)
            fresh.push_back(m_connections[list.indexOf(*child.object)].get());
    leaving.clear();
    for (ConnectionController* connection : fresh)
        connection->refresh(editableContext(message));
}

void ConnexionsListener::rearrange(const Orv::Data::DataMessage& message, const List& list)
{
    std::unordered_map<const Connexion*, std::unique_ptr<ConnectionController>> held;
    std::vector<std::unique_ptr<ConnectionController>> former = m_connections.takeAll();
    for (auto& connection : former)
        if (const Connexion* connexion = connection->connexion())
            held.emplace(connexion, std::move(connection));
    for (const Connexion& connexion : list) {
        const auto found = held.find(&connexion);
        m_connections.pushBack(found != held.end() && found->second != nullptr
                                   ? std::move(found->second)
                                   : std::make_unique<ConnectionController>(connexion, m_node));
    }
    former.clear();
    held.clear();
    for (const auto& connection : m_connections) {
        if (connection->input() == nullptr)
            continue;
        connection->input()->reorderTargets();
        connection->output()->reorderTargets();
    }
    refreshAll(editableContext(message));
}

} // namespace Ksx::Core
