#include "behavior/compinstancewriter.h"

#include "behavior/functionroot.h"
#include "behavior/ownerof.h"
#include "content/constantvalue.h"
#include "content/packageof.h"
#include "data/content/function.h"
#include "data/content/graph.h"
#include "data/content/parametermanipulators.h"
#include "data/desc/valuetype.h"
#include "editing/keyindex.h"
#include <algorithm>
#include <limits>
#include <map>
#include <numeric>
#include <utility>

namespace Ksx::Core::Behavior {

namespace {

using namespace Data::Content;
using Orv::Core::ManipulatorContext;
using Orv::Core::ManipulatorList;
using Orv::Core::ManipulatorStruct;
using Orv::Data::BaseObject;
namespace ValueType = Data::Desc::ValueType;

// Can a parameter with that value still be one of an input of the type?
bool fits(const BaseObject* value, unsigned type)
{
    if (value == nullptr)
        return true;
    if (dynamic_cast<const DynamicValue*>(value) == nullptr)
        return !parameterValueAs(type, value).empty();
    // A node can name several types where its own follows from what feeds it.
    const ParamNode* const root = rootNodeOf(value);
    return !ValueType::isImage(type) &&
           (root == nullptr || (root->type().value().get() & ValueType::plain(type)) != 0);
}

// A key by the hash of another one, in the form in which what has changed is known.
template <class Key>
struct HashOf
{
    struct Hash
    {
        std::size_t value;
        std::size_t get() const { return value; }
    };
    using Type = std::size_t;
    template <class Item>
    static Hash of(const Item& item)
    {
        return {std::hash<std::string>()(Key::of(item).get())};
    }
};

// The places of the items of whose keys the diff may tell something, from the last to the first.
template <class Key, class Item>
std::vector<std::size_t> changedPlaces(const Orv::Data::ContainerList<Item>& list,
                                       const InterfaceDiff& diff)
{
    std::vector<std::size_t> places;
    if (const auto changed = diff.changedIdentifiers()) {
        for (const std::size_t identifier : *changed)
            for (const Item* item : KeyIndex<Item, HashOf<Key>>::findAll(list, identifier))
                places.push_back(list.indexOf(*item));
        std::sort(places.rbegin(), places.rend());
    } else {
        for (std::size_t i = list.size(); i-- > 0;)
            places.push_back(i);
    }
    return places;
}

constexpr std::size_t NoRank = std::numeric_limits<std::size_t>::max();

// Returns the order that items of these ranks have. Items without a rank stay behind the items that
// they stand behind.
std::vector<std::size_t> orderOf(std::vector<std::size_t> ranks)
{
    for (std::size_t i = 0; i < ranks.size(); ++i)
        if (ranks[i] == NoRank)
            ranks[i] = i == 0 ? 0 : ranks[i - 1];
    std::vector<std::size_t> order(ranks.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return ranks[a] < ranks[b]; });
    return order;
}

} // namespace

bool CompInstanceWriter::stands(const CompInstance& instance)
{
    const auto* node = ownerOf<CompNode>(instance);
    return node != nullptr && ownerOf<Graph>(*node) != nullptr && isAttached(instance) &&
           packageOf(instance) != nullptr;
}

CompInstanceWriter::CompInstanceWriter(const CompInstance& instance, ManipulatorContext& context,
                                       DroppedOutputs& dropped)
    : m_node(*ownerOf<CompNode>(instance), context), m_instance(instance, context),
      m_dropped(dropped)
{}

std::size_t CompInstanceWriter::indexOfOutput(Uid uid) const
{
    const auto& outputs = m_node.get()->compOutputs();
    const CompOutput* const found = KeyIndex<CompOutput, UidKey>::find(outputs, uid);
    return found == nullptr ? outputs.size() : outputs.indexOf(*found);
}

std::size_t CompInstanceWriter::indexOfBridging(const std::string& identifier) const
{
    const auto& bridgings = m_instance.get()->outputBridgings();
    const OutputBridging* const found =
        KeyIndex<OutputBridging, IdentifierKey>::find(bridgings, identifier);
    return found == nullptr ? bridgings.size() : bridgings.indexOf(*found);
}

void CompInstanceWriter::followOutputs(const InterfaceDiff& outputs, const GraphOutputs& list)
{
    const auto& bridgings = m_instance.get()->outputBridgings();
    for (const std::size_t i : changedPlaces<IdentifierKey>(bridgings, outputs)) {
        const OutputBridging& bridging = bridgings.at(i);
        const InterfaceDiff::Fate* const fate = outputs.fateOf(bridging.identifier().get());
        if (fate == nullptr)
            continue;
        if (!fate->item) {
            removeOutput(i);
            continue;
        }
        m_instance.outputBridgings().at(i).identifier().setIfChanged(fate->item->identifier);
        if (fate->isTypeChanged)
            setType(bridging.uid().get(), fate->item->type);
    }
    for (const InterfaceDiff::Addition& added : outputs.added())
        addOutput(added, list);
    if (outputs.isReordered())
        orderOutputs(outputs);
}

void CompInstanceWriter::removeOutput(std::size_t bridging)
{
    const Uid uid = m_instance.get()->outputBridgings().at(bridging).uid().get();
    m_dropped.add(*m_node.get(), uid);
    m_instance.outputBridgings().erase(bridging, 1);
    m_node.compOutputs().erase(
        KeyIndex<CompOutput, UidKey>::find(m_node.get()->compOutputs(), uid));
}

void CompInstanceWriter::setType(Uid output, unsigned type)
{
    if (const CompOutput* found =
            KeyIndex<CompOutput, UidKey>::find(m_node.get()->compOutputs(), output))
        ManipulatorStruct<CompOutput>(*found, m_node.context())
            .comptype()
            .value()
            .setIfChanged(type);
}

void CompInstanceWriter::addOutput(const InterfaceDiff::Addition& added, const GraphOutputs& list)
{
    const OutputBridging* const remembered = KeyIndex<OutputBridging, IdentifierKey>::find(
        m_instance.get()->outputBridgings(), added.item.identifier);
    if (remembered != nullptr)
        setType(remembered->uid().get(), added.item.type);
    else
        makeOutput(added, list);
}

// Behind the next output before it that the instance has.
void CompInstanceWriter::makeOutput(const InterfaceDiff::Addition& added, const GraphOutputs& list)
{
    const auto& bridgings = m_instance.get()->outputBridgings();
    std::size_t bridgingIndex = 0;
    std::size_t outputIndex = 0;
    for (std::size_t before = added.place; before-- > 0;) {
        const std::size_t found = indexOfBridging(list.at(before).identifier().get());
        if (found == bridgings.size())
            continue;
        bridgingIndex = found + 1;
        outputIndex = std::min(indexOfOutput(bridgings.at(found).uid().get()) + 1,
                               m_node.get()->compOutputs().size());
        break;
    }
    const Uid uid = UidSource::shared().next(
        [this](Uid taken) { return indexOfOutput(taken) < m_node.get()->compOutputs().size(); });
    auto output = std::make_unique<CompOutput>();
    output->uid().assign(uid);
    output->comptype().value().assign(added.item.type);
    m_node.compOutputs().insert(outputIndex, std::move(output));
    auto bridging = std::make_unique<OutputBridging>();
    bridging->uid().assign(uid);
    bridging->identifier().assign(added.item.identifier);
    m_instance.outputBridgings().insert(bridgingIndex, std::move(bridging));
}

void CompInstanceWriter::orderOutputs(const InterfaceDiff& outputs)
{
    std::vector<std::size_t> ranks;
    std::map<Uid, std::size_t> ranksOfUids;
    for (const OutputBridging& bridging : m_instance.get()->outputBridgings()) {
        const std::size_t place = outputs.placeOf(bridging.identifier().get());
        ranks.push_back(place < outputs.itemCount() ? place : NoRank);
        ranksOfUids.emplace(bridging.uid().get(), ranks.back());
    }
    m_instance.outputBridgings().reorder(orderOf(std::move(ranks)));
    std::vector<std::size_t> outputRanks;
    for (const CompOutput& output : m_node.get()->compOutputs()) {
        const auto found = ranksOfUids.find(output.uid().get());
        outputRanks.push_back(found == ranksOfUids.end() ? NoRank : found->second);
    }
    m_node.compOutputs().reorder(orderOf(std::move(outputRanks)));
}

void CompInstanceWriter::followInputs(const InterfaceDiff& inputs)
{
    auto list = m_instance.parameters();
    const auto& parameters = m_instance.get()->parameters();
    for (const std::size_t i : changedPlaces<NameKey>(parameters, inputs)) {
        const Parameter& parameter = parameters.at(i);
        const InterfaceDiff::Fate* const fate = inputs.fateOf(parameter.name().get());
        if (fate == nullptr)
            continue;
        if (!fate->item ||
            (fate->isTypeChanged && !fits(parameter.paramValue().get(), fate->item->type)))
            list.erase(i, 1);
        else
            list.at(i).name().setIfChanged(fate->item->identifier);
    }
    Behavior::followInputs(m_node.connexions(), inputs);
}

void CompInstanceWriter::keepConnectionsTo(const Connectors& inputs)
{
    Behavior::keepConnectionsTo(m_node.connexions(), inputs);
}

Connectors::Connectors(const Graph& graph) : m_inputs(graph.paraminputs()), m_areImages(true) {}

Connectors::Connectors(const Function& function)
    : m_inputs(function.paraminputs()), m_areImages(false)
{}

bool Connectors::has(const std::string& identifier) const
{
    if (!std::exchange(m_isRead, true))
        for (const ParamInput& input : m_inputs)
            if (!m_areImages || ValueType::isImage(input.type().value().get()))
                m_identifiers.insert(input.identifier().get());
    return m_identifiers.count(identifier) != 0;
}

void followInputs(const ManipulatorList<Connexion>& connexions, const InterfaceDiff& inputs)
{
    ManipulatorList<Connexion> list = connexions;
    for (const std::size_t i : changedPlaces<IdentifierKey>(*list.get(), inputs)) {
        const auto* fate = inputs.fateOf(list.get()->at(i).identifier().get());
        if (fate == nullptr)
            continue;
        if (!fate->item)
            list.erase(i, 1);
        else
            list.at(i).identifier().setIfChanged(fate->item->identifier);
    }
}

void keepConnectionsTo(const ManipulatorList<Connexion>& connexions, const Connectors& inputs)
{
    ManipulatorList<Connexion> list = connexions;
    for (std::size_t i = list.get()->size(); i-- > 0;)
        if (!inputs.has(list.get()->at(i).identifier().get()))
            list.erase(i, 1);
}

} // namespace Ksx::Core::Behavior
