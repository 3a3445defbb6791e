// All atomic filters.
#pragma once

#include "data/desc/filter.h"

namespace Ksx::Data::Desc {

// Read-only once built; any thread may read.
class FilterTable
{
public:
    // The two groups are shared: every filter has the first, those with bitmap data the second.
    FilterTable(const ParameterGroupPointer& commonParameters,
                const ParameterGroupPointer& inputParameters);
    FilterTable(const FilterTable&) = delete;
    FilterTable& operator=(const FilterTable&) = delete;
    ~FilterTable();

    // Null if there is no such filter. The answer lives as long as the table.
    const Filter* find(unsigned kind) const;
    const Filter* find(FilterKind kind) const { return find(static_cast<unsigned>(kind)); }
    const Filter* find(std::string_view identifier) const;

    // In the order in which filters are offered, which is not that of their kinds.
    const std::vector<const Filter*>& all() const { return m_list; }

private:
    std::vector<std::unique_ptr<const Filter>> m_filters;
    std::vector<const Filter*> m_list;
    std::vector<const Filter*> m_byKind; // null for a kind without filter
    std::unordered_map<std::string_view, const Filter*> m_byIdentifier;
};

// The parameters that all filters have, and those of the bitmap data.
ParameterGroupPointer makeCommonParameters();
ParameterGroupPointer makeInputParameters();

} // namespace Ksx::Data::Desc
