// Parameters that are shown together, with a name of their own.
#pragma once

#include "data/desc/parameter.h"
#include <memory>
#include <unordered_map>

namespace Ksx::Data::Desc {

enum class GroupRole
{
    Common, // the parameters that every node has
    Main,   // the node's own ones
    Named   // others, such as those of an instance that its graph shows under a name
};

// Owns its parameters. Shared between the nodes that have it.
class ParameterGroup
{
public:
    ParameterGroup(GroupRole role, std::string identifier, std::string nameKey,
                   std::string descKey);
    ParameterGroup(const ParameterGroup&) = delete;
    ParameterGroup& operator=(const ParameterGroup&) = delete;
    ~ParameterGroup();

    GroupRole role() const { return m_role; }
    // "Filters_parameters", "Common_parameters" or another word.
    const std::string& identifier() const { return m_identifier; }
    // The word by which nodes ask for the group: "__common__", "__main__" or the identifier.
    const std::string& name() const;
    const std::string& nameKey() const { return m_nameKey; }
    const std::string& descKey() const { return m_descKey; }

    // In the order in which they were added; connectors among them. Addresses stay the same as long
    // as the group lives.
    const std::vector<const Parameter*>& parameters() const { return m_list; }
    // The first one of that identifier, or null.
    const Parameter* find(std::string_view identifier) const;

    // An identifier that is there already is added all the same, and found no more.
    const Parameter& add(Parameter parameter);

private:
    GroupRole m_role;
    std::string m_identifier;
    std::string m_nameKey;
    std::string m_descKey;
    std::vector<std::unique_ptr<const Parameter>> m_parameters;
    std::vector<const Parameter*> m_list;
    std::unordered_map<std::string_view, const Parameter*> m_byIdentifier;
};

using ParameterGroupPointer = std::shared_ptr<const ParameterGroup>;

} // namespace Ksx::Data::Desc
