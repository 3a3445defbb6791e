#include "graph/inputnodewatch.h"

#include "data/content/compnode.h"
#include "ksx/core/compinputnodecontroller.h"
#include "ksx/core/edit.h"
#include <utility>
#include <vector>

namespace Ksx::Core {

using Data::Content::ParamInput;

InputNodeWatch::InputNodeWatch(const List& inputs)
{
    refill(inputs);
    m_touched.clear();
    listenTo(inputs, *this);
}

void InputNodeWatch::add(CompInputNodeController& node, Uid entry)
{
    m_nodes.emplace(entry, &node);
}

void InputNodeWatch::remove(const CompInputNodeController& node, Uid entry)
{
    const auto [first, last] = m_nodes.equal_range(entry);
    for (auto place = first; place != last; ++place) {
        if (place->second == &node) {
            m_nodes.erase(place);
            return;
        }
    }
}

SeenInput InputNodeWatch::read(const ParamInput& input)
{
    return {input.uid().get(), input.type().value().get()};
}

void InputNodeWatch::enter(const ParamInput&, const SeenInput& seen)
{
    m_touched.insert(seen.uid);
}

void InputNodeWatch::leave(const ParamInput*, const SeenInput& seen)
{
    m_touched.insert(seen.uid);
}

void InputNodeWatch::deliver(const Orv::Data::DataMessage& message)
{
    ItemFollower::deliver(message);
    std::vector<CompInputNodeController*> nodes;
    for (const Uid uid : std::exchange(m_touched, {})) {
        const auto [first, last] = m_nodes.equal_range(uid);
        for (auto place = first; place != last; ++place)
            nodes.push_back(place->second);
    }
    for (CompInputNodeController* node : nodes)
        node->followInput(editableContext(message));
}

} // namespace Ksx::Core
