#include "ksx/core/parameterscontroller.h"

#include "data/content/graph.h"
#include "data/content/parameter.h"
#include "data/desc/valuetype.h"
#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <utility>

namespace Ksx::Core {

namespace {

namespace Desc = Data::Desc;

// Connectors of images and FX-maps have no value at any time.
bool hasRow(const Desc::Parameter& description)
{
    return !Desc::ValueType::isImage(description.type) &&
           description.type != Desc::ValueType::FxMap;
}

} // namespace

ParametersController::ParametersController(const List& list, DataContext context, Groups groups,
                                           bool hasPrimaryInput)
    : m_list(&list), m_context(context), m_groups(std::move(groups)), m_hasNoInput(!hasPrimaryInput)
{}

ParametersController::~ParametersController() = default;

struct ParametersController::RowIndex
{
    Descriptions descriptions;
    std::unordered_map<std::string_view, std::size_t> byIdentifier; // the first of each
    std::unordered_map<const Desc::Parameter*, std::size_t> byDescription;
};

const ParametersController::RowIndex& ParametersController::rowIndex() const
{
    if (m_index != nullptr)
        return *m_index;
    m_index = std::make_unique<RowIndex>();
    m_index->descriptions = collectDescriptions();
    for (std::size_t i = 0; i < m_index->descriptions.size(); ++i) {
        m_index->byIdentifier.emplace(m_index->descriptions[i]->identifier, i);
        m_index->byDescription.emplace(m_index->descriptions[i], i);
    }
    return *m_index;
}

const ParametersController::Descriptions& ParametersController::descriptions() const
{
    return rowIndex().descriptions;
}

ParametersController::Descriptions ParametersController::collectDescriptions() const
{
    Descriptions found;
    for (const Desc::ParameterGroupPointer& group : m_groups)
        std::copy_if(group->parameters().begin(), group->parameters().end(),
                     std::back_inserter(found),
                     [](const Desc::Parameter* description) { return hasRow(*description); });
    return found;
}

ParameterController& ParametersController::row(std::size_t index,
                                               const Desc::Parameter& description)
{
    if (m_rows.size() <= index)
        m_rows.resize(index + 1);
    if (!m_rows[index])
        m_rows[index] = std::make_unique<ParameterController>(
            m_list, description, m_hasNoInput, ParameterController::ListBox(inheritedList()));
    return *m_rows[index];
}

ParameterController* ParametersController::parameter(std::string_view identifier)
{
    return rowAt(rowIndex().byIdentifier, identifier);
}

ParameterController* ParametersController::parameter(const Desc::Parameter& description)
{
    return rowAt(rowIndex().byDescription, &description);
}

template <class Index, class Key>
ParameterController* ParametersController::rowAt(const Index& rows, const Key& key)
{
    const auto found = rows.find(key);
    return found == rows.end() ? nullptr : &row(found->second, *descriptions()[found->second]);
}

std::size_t ParametersController::count() const
{
    return descriptions().size();
}

ParameterController& ParametersController::at(std::size_t index)
{
    Q_ASSERT(index < count());
    return row(index, *descriptions()[index]);
}

const ParametersController::List* ParametersController::inheritedList() const
{
    const auto& scope = m_context.objects();
    const auto* graph =
        scope.empty() ? nullptr : dynamic_cast<const Data::Content::Graph*>(scope.front().get());
    return graph == nullptr ? nullptr : &graph->baseParameters();
}

InheritedParamsListener* ParametersController::inherited()
{
    const List* const list = inheritedList();
    if (m_inherited == nullptr && list != nullptr)
        m_inherited = std::make_unique<InheritedParamsListener>(*list);
    return m_inherited.get();
}

void ParametersController::setDescriptions(Groups groups, bool hasPrimaryInput)
{
    const Orv::Data::DataPointerBox<ParametersController> self(this);
    const unsigned number = ++m_descriptionCount;
    const auto isCurrent = [&] { return self && m_descriptionCount == number; };
    const Descriptions former = descriptions();
    m_index.reset();
    // What the rows refer to until they are described anew.
    const Groups formerGroups = std::exchange(m_groups, std::move(groups));
    Rows formerRows = std::exchange(m_rows, {});
    formerRows.resize(former.size());
    m_hasNoInput = !hasPrimaryInput;

    const Descriptions present = descriptions();
    m_rows.resize(present.size());
    std::vector<bool> isKept(former.size(), false);
    std::vector<std::size_t> added;
    // The former places of each identifier, the first one last.
    std::unordered_map<std::string_view, std::vector<std::size_t>> places;
    for (std::size_t place = former.size(); place > 0; --place)
        places[former[place - 1]->identifier].push_back(place - 1);
    for (std::size_t i = 0; i < present.size(); ++i) {
        const auto found = places.find(present[i]->identifier);
        if (found == places.end() || found->second.empty()) {
            added.push_back(i);
            continue;
        }
        const std::size_t place = found->second.back();
        found->second.pop_back();
        isKept[place] = true;
        m_rows[i] = std::move(formerRows[place]);
    }
    for (std::size_t i = 0; i < present.size() && isCurrent(); ++i)
        if (m_rows[i])
            m_rows[i]->setDescription(*present[i], m_hasNoInput);
    formerRows.clear();

    for (std::size_t place = former.size(); place > 0 && isCurrent(); --place)
        if (!isKept[place - 1])
            m_removed(place - 1);
    for (std::size_t i = 0; i < added.size() && isCurrent(); ++i)
        m_added(added[i]);
}

} // namespace Ksx::Core
