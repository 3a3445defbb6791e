// The command "specialization": turns a filter into a ready graph.
#pragma once

#include "core/programcommand.h"

class Services;

namespace ProgramCommand {

class FilterSpecialization final : public Orv::Core::ProgramCommand
{
public:
    // The services outlive the command.
    explicit FilterSpecialization(Services* services);
    int execute(const ParsedOptions& parsedOptions, const VariablesMap& variables) override;
    void declarePositional(PositionalDescription& positional) override;
};

} // namespace ProgramCommand
