#include "ksx/core/graphinterface.h"

#include "data/content/graphmanipulators.h"
#include "data/content/nodemanipulators.h"
#include "data/content/parametermanipulators.h"
#include "data/identifiersuite.h"
#include "data/latin1.h"
#include "editing/dictionary.h"
#include "editing/identifierindex.h"
#include <QCoreApplication>
#include <algorithm>
#include <charconv>
#include <cstdint>
#include <system_error>

namespace Ksx::Core {

namespace {

using namespace Data::Content;
using Orv::Core::ManipulatorList;
using Orv::Core::ManipulatorStruct;
using Orv::Data::ContainerList;

std::string translatedFilterText(const char* key)
{
    return Orv::toLatin1(QCoreApplication::translate("Ksx::Data::Desc::Filters", key));
}

// Does it end in digits from which the suite cannot count on?
bool endsInLongNumber(const std::string& text)
{
    const std::size_t begin = text.find_last_not_of("0123456789") + 1;
    std::uint32_t number = 0;
    const auto result = std::from_chars(text.data() + begin, text.data() + text.size(), number);
    return result.ec == std::errc::result_out_of_range || number == ~std::uint32_t{0};
}

template <class Item>
Uid freeUid(const ManipulatorList<Item>& list)
{
    const auto& dictionary = DictionaryOf<Item>::of(list);
    return UidSource::shared().next([&](Uid uid) { return dictionary.contains(uid); });
}

template <class Item>
void insertAt(const ManipulatorList<Item>& list, std::size_t index, std::unique_ptr<Item> item)
{
    std::vector<std::unique_ptr<Orv::Data::BaseObject>> items;
    items.push_back(std::move(item));
    ManipulatorList<Item>(list).insert(std::min(index, list.get()->size()), std::move(items));
}

template <class List>
void addUsages(List& list, const std::vector<InterfaceUsage>& usages)
{
    for (const InterfaceUsage& usage : usages) {
        auto added = std::make_unique<Usage>();
        added->components().assign(usage.components);
        added->name().assign(usage.name);
        list.pushBack(std::move(added));
    }
}

} // namespace

template <class Item>
void IdentifierTaken::collect(const ContainerList<Item>& list, const Item* ignored)
{
    if (const auto* index = IdentifierIndex<Item>::of(list)) {
        m_names = std::shared_ptr<const TakenNames>(std::shared_ptr<void>(), &index->names());
        if (ignored != nullptr && ignored->getParent() == &list)
            m_ignored = ignored->identifier().get();
        return;
    }
    auto names = std::make_shared<TakenNames>();
    for (const Item& item : list)
        if (&item != ignored)
            names->add(item.identifier().get());
    m_names = std::move(names);
}

bool IdentifierTaken::operator()(const std::string& identifier) const
{
    Q_ASSERT(m_names != nullptr);
    return m_names->count(identifier) > (m_ignored == identifier ? 1u : 0u);
}

std::string IdentifierTaken::firstFree(const std::string& wanted) const
{
    constexpr char separator = Orv::DefaultIdentifierPolicy::Separator;
    const auto [base, number] = Orv::splitIdentifier(wanted, separator);
    const long long found = m_ignored ? m_names->freeNumber(base, number, *m_ignored)
                                      : m_names->freeNumber(base, number);
    return base + separator + std::to_string(found);
}

ParamInputNameExist::ParamInputNameExist(const ContainerList<ParamInput>& list,
                                         const ParamInput* ignored)
{
    collect(list, ignored);
}

GraphOutputNameExist::GraphOutputNameExist(const ContainerList<GraphOutput>& list,
                                           const GraphOutput* ignored)
{
    collect(list, ignored);
}

ParamsGraphDataNameExist::ParamsGraphDataNameExist(const ContainerList<ParamsGraphData>& list,
                                                   const ParamsGraphData* ignored)
{
    collect(list, ignored);
}

std::string freeIdentifier(const std::string& wanted, const std::string& fallback,
                           const IdentifierTaken& isTaken)
{
    std::string identifier = Orv::DefaultIdentifierPolicy::normalize(wanted);
    if (identifier.empty())
        identifier = fallback;
    if (!isTaken(identifier))
        return identifier;
    if (endsInLongNumber(identifier))
        identifier += "_1";
    return isTaken.firstFree(identifier);
}

std::string defaultInputIdentifier()
{
    return translatedFilterText("DEFAULT_INPUT_IDENTIFIER");
}

std::string defaultOutputIdentifier()
{
    return translatedFilterText("DEFAULT_OUTPUT_IDENTIFIER");
}

Uid applyAddInput(const ManipulatorList<ParamInput>& inputs, const InterfaceEntry& entry)
{
    const Uid uid = freeUid(inputs);
    auto input = std::make_unique<ParamInput>();
    input->identifier().assign(freeIdentifier(entry.identifier, defaultInputIdentifier(),
                                              ParamInputNameExist(*inputs.get())));
    input->uid().assign(uid);
    input->type().value().assign(entry.type);
    addUsages(input->usages(), entry.usages);
    insertAt(inputs, entry.index, std::move(input));
    return uid;
}

Uid applyAddOutput(const ManipulatorStruct<Graph>& graph, const InterfaceEntry& entry)
{
    const auto outputs = graph.graphOutputs();
    const Uid uid = freeUid(outputs);

    auto rootOutput = std::make_unique<RootOutput>();
    rootOutput->output().assign(uid);
    rootOutput->format().value().assign(0);
    rootOutput->mipmaps().value().assign(0);
    insertAt(graph.root().rootOutputs(), AtEnd, std::move(rootOutput));

    auto output = std::make_unique<GraphOutput>();
    output->identifier().assign(freeIdentifier(entry.identifier, defaultOutputIdentifier(),
                                               GraphOutputNameExist(*outputs.get())));
    output->uid().assign(uid);
    addUsages(output->usages(), entry.usages);
    insertAt(outputs, entry.index, std::move(output));
    return uid;
}

} // namespace Ksx::Core
