#include "graph/connexionslistener.h"

#include "data/content/connexion.h"
#include "data/datamessage.h"
#include "data/shadowobject.h"
#include "ksx/core/edit.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/nodecontroller.h"
#include "ksx/core/outputconnectorcontroller.h"
#include <algorithm>
#include <iterator>
#include <unordered_map>

namespace Ksx::Core {

using Data::Content::Connexion;

void ConnexionsListener::follow(const List& list)
{
    m_connections.reserve(list.size());
    for (const Connexion& connexion : list)
        m_connections.push_back(std::make_unique<ConnectionController>(connexion, m_node));
    listenTo(list, *this);
}

void ConnexionsListener::refreshAll(Orv::Core::ManipulatorContext* context)
{
    for (const auto& connection : m_connections)
        connection->refresh(context);
    orderSources();
}

void ConnexionsListener::orderSources()
{
    const auto hasSeveral = [](const auto& connection) {
        return connection->input() != nullptr && connection->input()->targets().size() > 1;
    };
    if (std::none_of(m_connections.begin(), m_connections.end(), hasSeveral))
        return;
    std::unordered_map<ConnectorController*, std::vector<ConnectorController*>> sources;
    for (const auto& connection : m_connections)
        if (hasSeveral(connection))
            sources[connection->input()].push_back(connection->output());
    for (auto& [input, outputs] : sources)
        input->setTargets(std::move(outputs));
}

ConnectionController* ConnexionsListener::find(const ConnectorController& input,
                                               const ConnectorController& output) const
{
    for (const auto& connection : m_connections)
        if (connection->input() == &input && connection->output() == &output)
            return connection.get();
    return nullptr;
}

void ConnexionsListener::deliver(const Orv::Data::DataMessage& message)
{
    const auto* list = static_cast<const List*>(message.object.get());
    if (list == nullptr)
        return;
    const bool isShapeAlone = (message.type & Orv::Data::ChangeType::Descendant) == 0;
    const bool isLate = m_isAhead; // what the script tells is here already
    m_isAhead = list->shadow() != nullptr && list->shadow()->hasPending();
    if (isShapeAlone && !isLate && !m_isAhead && isPlain(message.runs, list->size()))
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
    std::vector<std::size_t> added;
    std::vector<std::unique_ptr<ConnectionController>> gone;
    std::size_t place = 0;
    for (const Orv::Data::ChangeRun& run : message.runs.runs()) {
        const auto begin = m_connections.begin() + static_cast<std::ptrdiff_t>(place);
        if (run.kind == Orv::Data::RunKind::Erased) {
            const auto end = begin + static_cast<std::ptrdiff_t>(run.count);
            std::move(begin, end, std::back_inserter(gone));
            m_connections.erase(begin, end);
            continue;
        }
        if (run.kind == Orv::Data::RunKind::Inserted) {
            std::vector<std::unique_ptr<ConnectionController>> made;
            for (std::size_t i = 0; i < run.count; ++i) {
                made.push_back(std::make_unique<ConnectionController>(list.at(place + i), m_node));
                added.push_back(place + i);
            }
            m_connections.insert(begin, std::make_move_iterator(made.begin()),
                                 std::make_move_iterator(made.end()));
        }
        place += run.count;
    }
    gone.clear();
    for (const std::size_t index : added)
        m_connections[index]->refresh(editableContext(message));
    const bool isAppended = added.empty() || added.front() + added.size() == m_connections.size();
    if (!isAppended)
        orderSources();
}

void ConnexionsListener::rearrange(const Orv::Data::DataMessage& message, const List& list)
{
    std::unordered_map<const Connexion*, std::unique_ptr<ConnectionController>> held;
    for (auto& connection : m_connections)
        if (const Connexion* connexion = connection->connexion())
            held.emplace(connexion, std::move(connection));
    std::vector<std::unique_ptr<ConnectionController>> connections;
    connections.reserve(list.size());
    for (const Connexion& connexion : list) {
        const auto found = held.find(&connexion);
        connections.push_back(found != held.end() && found->second != nullptr
                                  ? std::move(found->second)
                                  : std::make_unique<ConnectionController>(connexion, m_node));
    }
    m_connections = std::move(connections);
    held.clear();
    refreshAll(editableContext(message));
}

} // namespace Ksx::Core
