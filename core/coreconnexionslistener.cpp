#include "ksx/core/connexionslistener.h"

#include "data/content/connexion.h"
#include "data/datamessage.h"
#include "ksx/core/edit.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/nodecontroller.h"
#include "ksx/core/outputconnectorcontroller.h"
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
    if (isShapeAlone && isPlain(message.runs, list->size()))
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

// Those that leave let go of their ends before others take them.
void ConnexionsListener::followRuns(const Orv::Data::DataMessage& message, const List& list)
{
    std::vector<std::size_t> added;
    std::size_t place = 0;
    for (const Orv::Data::ChangeRun& run : message.runs.runs()) {
        const auto begin = m_connections.begin() + static_cast<std::ptrdiff_t>(place);
        if (run.kind == Orv::Data::RunKind::Erased) {
            m_connections.erase(begin, begin + static_cast<std::ptrdiff_t>(run.count));
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
    for (const std::size_t index : added)
        m_connections[index]->refresh(editableContext(message));
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
