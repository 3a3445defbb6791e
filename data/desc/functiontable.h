// All atomic functions.
#pragma once

#include "data/desc/function.h"
#include <memory>
#include <string_view>
#include <unordered_map>

namespace Ksx::Data::Desc {

// Read-only once built; any thread may read.
class FunctionTable
{
public:
    FunctionTable();
    FunctionTable(const FunctionTable&) = delete;
    FunctionTable& operator=(const FunctionTable&) = delete;
    ~FunctionTable();

    // Null if there is no such function. The answer lives as long as the table.
    const Function* find(unsigned kind) const;
    const Function* find(FunctionsEnum kind) const { return find(static_cast<unsigned>(kind)); }
    const Function* find(std::string_view identifier) const;
    // The typed getter, or the constant, of one ValueType; null if there is none. Images have none;
    // a string has a constant but no getter.
    const Function* getterOf(unsigned type) const;
    const Function* constantOf(unsigned type) const;

    // In the order of their kinds.
    const std::vector<const Function*>& all() const { return m_list; }

private:
    std::vector<Function> m_functions;
    std::vector<const Function*> m_list;
    std::unordered_map<std::string_view, const Function*> m_byIdentifier;
};

} // namespace Ksx::Data::Desc
