// The command "update": brings packages and all that they depend on to the current format.
#pragma once

#include "core/programcommand.h"

class Services;

namespace ProgramCommand {

class Update final : public Orv::Core::ProgramCommand
{
public:
    // The services outlive the command.
    explicit Update(Services* services);
    int execute(const ParsedOptions& parsedOptions, const VariablesMap& variables) override;
    void declarePositional(PositionalDescription& positional) override;

private:
    bool savePackages(const VariablesMap& variables, const QString& presetsPath) const;

    Services* m_services;
};

} // namespace ProgramCommand
