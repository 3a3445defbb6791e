#include "ksx/core/parameterscontroller.h"

#include "data/content/parameter.h"
#include "data/desc/valuetype.h"
#include <algorithm>
#include <iterator>
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
    : m_list(&list), m_context(std::move(context)), m_groups(std::move(groups)),
      m_hasNoInput(!hasPrimaryInput)
{}

ParametersController::~ParametersController() = default;

ParametersController::Descriptions ParametersController::descriptions() const
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
        m_rows[index] = std::make_unique<ParameterController>(m_list, description, m_hasNoInput);
    return *m_rows[index];
}

ParameterController* ParametersController::parameter(std::string_view identifier)
{
    return find(
        [&](const Desc::Parameter& described) { return described.identifier == identifier; });
}

ParameterController* ParametersController::parameter(const Desc::Parameter& description)
{
    return find([&](const Desc::Parameter& described) { return &described == &description; });
}

template <class Predicate>
ParameterController* ParametersController::find(const Predicate& isWanted)
{
    const Descriptions described = descriptions();
    for (std::size_t i = 0; i < described.size(); ++i)
        if (isWanted(*described[i]))
            return &row(i, *described[i]);
    return nullptr;
}

std::size_t ParametersController::count() const
{
    return descriptions().size();
}

ParameterController& ParametersController::at(std::size_t index)
{
    return row(index, *descriptions()[index]);
}

void ParametersController::setDescriptions(Groups groups, bool hasPrimaryInput)
{
    const Descriptions former = descriptions();
    // What the rows refer to until they are described anew.
    const Groups formerGroups = std::exchange(m_groups, std::move(groups));
    Rows formerRows = std::exchange(m_rows, {});
    formerRows.resize(former.size());
    m_hasNoInput = !hasPrimaryInput;

    const Descriptions present = descriptions();
    m_rows.resize(present.size());
    std::vector<bool> isKept(former.size(), false);
    std::vector<std::size_t> added;
    for (std::size_t i = 0; i < present.size(); ++i) {
        std::size_t place = 0;
        while (place < former.size() &&
               (isKept[place] || former[place]->identifier != present[i]->identifier))
            ++place;
        if (place == former.size()) {
            added.push_back(i);
        } else {
            isKept[place] = true;
            m_rows[i] = std::move(formerRows[place]);
        }
    }
    for (std::size_t i = 0; i < present.size(); ++i)
        if (m_rows[i])
            m_rows[i]->setDescription(*present[i], m_hasNoInput);
    formerRows.clear();

    for (std::size_t place = former.size(); place > 0; --place)
        if (!isKept[place - 1])
            m_removed(place - 1);
    for (const std::size_t index : added)
        m_added(index);
}

} // namespace Ksx::Core
