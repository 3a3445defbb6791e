// The command "graph-parameters-editor": changes or freezes the inputs of a package's first graph.
#pragma once

#include "core/programcommand.h"

class Services;

namespace Ksx::Data::Content {
class Package;
} // namespace Ksx::Data::Content

namespace ProgramCommand {

class InputEditor final : public Orv::Core::ProgramCommand
{
public:
    // The services outlive the command.
    explicit InputEditor(Services* services);
    int execute(const ParsedOptions& parsedOptions, const VariablesMap& variables) override;
    void declarePositional(PositionalDescription& positional) override;

private:
    bool save(const Ksx::Data::Content::Package& package, const VariablesMap& variables,
              const QString& presetsPath) const;

    Services* m_services;
};

} // namespace ProgramCommand
