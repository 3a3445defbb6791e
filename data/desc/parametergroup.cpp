#include "data/desc/parametergroup.h"

namespace Ksx::Data::Desc {

ParameterGroup::ParameterGroup(GroupRole role, std::string identifier, std::string nameKey,
                               std::string descKey)
    : m_role(role), m_identifier(std::move(identifier)), m_nameKey(std::move(nameKey)),
      m_descKey(std::move(descKey))
{}

ParameterGroup::~ParameterGroup() = default;

const std::string& ParameterGroup::name() const
{
    static const std::string common = "__common__";
    static const std::string main = "__main__";
    switch (m_role) {
    case GroupRole::Common:
        return common;
    case GroupRole::Main:
        return main;
    case GroupRole::Named:
        break;
    }
    return m_identifier;
}

const Parameter* ParameterGroup::find(std::string_view identifier) const
{
    const auto found = m_byIdentifier.find(identifier);
    return found == m_byIdentifier.end() ? nullptr : found->second;
}

const Parameter& ParameterGroup::add(Parameter parameter)
{
    m_parameters.push_back(std::make_unique<const Parameter>(std::move(parameter)));
    const Parameter* const added = m_parameters.back().get();
    m_list.push_back(added);
    m_byIdentifier.emplace(added->identifier, added);
    return *added;
}

} // namespace Ksx::Data::Desc
