// The command "specialization": turns a filter into a ready graph.
#pragma once

#include "core/programcommand.h"
#include "ksx/core/packageslistmanager.h"
#include "programcommand/graphspecializer.h"

class Services;

namespace ProgramCommand {

class FilterSpecialization final : public Orv::Core::ProgramCommand
{
public:
    // The services outlive the command.
    explicit FilterSpecialization(Services* services);
    int execute(const ParsedOptions& parsedOptions, const VariablesMap& variables) override;
    void declarePositional(PositionalDescription& positional) override;

private:
    using PackageBox = Ksx::Core::PackagesListManager::PackageBox;

    bool loadInput(const QString& input, const QStringList& presetsPaths) const;
    PackageBox outputPackage(const Ksx::Data::Content::Package& source, const QString& target,
                             const VariablesMap& variables, const QStringList& presetsPaths) const;
    bool specialize(Ksx::Core::PackageController& package, const GraphSpecializer::GraphBox& filter,
                    const VariablesMap& variables) const;

    Services* m_services;
};

} // namespace ProgramCommand
