// The built-in tables of filters and functions, one object for the process.
#pragma once

#include <memory>

namespace Ksx::Data::Desc {

class FilterTable;
class FunctionTable;
class ParameterGroup;

// Built on first use, which may happen in any thread, and read-only from then on: what is found
// stays where it is until destroy().
class DescriptionTables
{
public:
    static DescriptionTables& instance();
    // Destroys the tables if there are any; main calls this at its end, and otherwise the exit of
    // the process does. Nothing that was found in the tables may be used any more. A later
    // instance() builds new ones.
    static void destroy();
    static bool exists();

    DescriptionTables(const DescriptionTables&) = delete;
    DescriptionTables& operator=(const DescriptionTables&) = delete;

    const FilterTable& filters() const { return *m_filters; }
    const FunctionTable& functions() const { return *m_functions; }
    // The groups that filters share: what all of them have, and the bitmap data. They may be kept
    // beyond destroy().
    const std::shared_ptr<const ParameterGroup>& commonParameters() const { return m_common; }
    const std::shared_ptr<const ParameterGroup>& inputParameters() const { return m_input; }

private:
    DescriptionTables();
    ~DescriptionTables();

    std::shared_ptr<const ParameterGroup> m_common;
    std::shared_ptr<const ParameterGroup> m_input;
    std::unique_ptr<const FilterTable> m_filters;
    std::unique_ptr<const FunctionTable> m_functions;
};

} // namespace Ksx::Data::Desc
