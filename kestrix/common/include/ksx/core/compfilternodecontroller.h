// A node that runs an atomic filter.
#pragma once

#include "ksx/core/compnodecontroller.h"
#include "ksx/core/follow.h"
#include <optional>

namespace Ksx::Data::Content {
class CompFilter;
class Resource;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class ParamGraphController;

// A filter that is not known has no description: no connectors, no parameters, and the node stays
// in the document as it is.
class CompFilterNodeController final : public CompNodeController
{
public:
    CompFilterNodeController(const Data::Content::CompNode& node,
                             const Data::Content::CompFilter& filter, CompGraphController& graph);
    ~CompFilterNodeController() override;

    // Null once it has died.
    const Data::Content::CompFilter* filter() const;
    // The graph that an FX-map holds; null for other filters and where it is missing.
    ParamGraphController* paramGraph() const;
    // The parameter that holds the path of the filter's resource; empty for a filter without one.
    static std::string resourceParameterOf(const std::string& filter);
    // The resource that the filter reads; null if it has none or the path leads nowhere.
    const Data::Content::Resource* resource() const;

    unsigned connectorType(const std::string& identifier) const override;
    bool isVariantConnector(const std::string& identifier) const override;
    bool isOptionalVariantConnector(const std::string& identifier) const override;
    void appendInputConnectorNames(std::vector<ConnectorEntry>& entries) const override;
    unsigned connectorUsage(const std::string& identifier) const override;
    unsigned outputType() const override;
    bool setOutputTypeFromInput(unsigned type, Orv::Core::ManipulatorContext* context) override;

    const std::vector<Data::Desc::ParameterGroupPointer>& parameterDescriptions() const override;
    const Data::Desc::Parameter* description(const std::string& identifier) const override;
    ParametersController* parametersController() override;
    bool isInheritable(const Data::Desc::Parameter& description) const override;
    bool hasRelativeType(const Data::Desc::Parameter& description) const override;
    const Data::Desc::Filter* nodeDescription() const override { return m_description; }

private:
    const Data::Desc::Parameter* input(const std::string& identifier) const;
    // The color mode that the node's own switch gives; none without such a parameter.
    std::optional<bool> colorSwitch() const;
    void onParameters(const Orv::Data::DataMessage& message);
    // Looks for the resource, and reads it if it is another one than before.
    void readResource();

    const Data::Desc::Filter* m_description;
    Orv::Data::DataPointerBox<Data::Content::CompFilter> m_filter;
    std::vector<Data::Desc::ParameterGroupPointer> m_groups; // the common ones first
    std::unique_ptr<ParametersController> m_parameters;      // made at the first request
    // For filters with a color switch or a resource.
    Follow<&CompFilterNodeController::onParameters, ListChanges, Stage::Description> m_watch{*this};
    Orv::Data::DataPointerBox<Data::Content::Resource> m_resource; // as it was last seen
    std::optional<bool> m_colorSwitch;                             // as it was last seen
};

} // namespace Ksx::Core
