// The controller of a node that runs an atomic filter.
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

// Shows a node with a CompFilter. The table of atomic filters describes the filter. For life and
// thread see NodeController.
//
// A filter that the table does not know has no description. Its node has no inputs and no
// parameters, and the document keeps all of it unchanged.
//
// The parameter "colorswitch" chooses the color mode. An edit that changes it gives the output of a
// variant filter the type of the switch. A filter with a resource reports to the DiagnosticLog if
// the file of the resource cannot be read.
class CompFilterNodeController final : public CompNodeController
{
public:
    // For the controller of the graph.
    CompFilterNodeController(const Data::Content::CompNode& node,
                             const Data::Content::CompFilter& filter, CompGraphController& graph);
    ~CompFilterNodeController() override;

    // Returns the filter in the document. Returns null once it has died.
    const Data::Content::CompFilter* filter() const;

    // Returns the graph that an FX-map holds. Returns null for other filters and where it is
    // missing. The graph owns the controller.
    ParamGraphController* paramGraph() const;

    // Returns the identifier of the parameter that holds the path of the resource. `filter` is the
    // identifier of a filter. Returns an empty text for a filter without a resource.
    static std::string resourceParameterOf(const std::string& filter);

    // Returns the resource that the filter reads. Returns null for a filter without one, and if the
    // path leads to no resource in an open package.
    const Data::Content::Resource* resource() const;

    // Returns the type of a variant input by the first known image that is connected to a variant
    // input. Returns the type of the output if there is none.
    unsigned connectorType(const std::string& identifier) const override;

    // Returns whether the description of the connector takes both kinds of images. For UniqueOutput
    // returns whether the filter can give both.
    bool isVariantConnector(const std::string& identifier) const override;
    // Returns true for a variant input that is marked so in the description.
    bool isOptionalVariantConnector(const std::string& identifier) const override;
    // Appends the inputs of the description, with translated labels and tooltips.
    void appendInputConnectorNames(std::vector<ConnectorEntry>& entries) const override;
    unsigned connectorUsage(const std::string& identifier) const override;

    // Returns the type of the first output in the document. Where the document has 0, returns the
    // types of the description.
    unsigned outputType() const override;

    // Gives all outputs of the node the type. Returns false and reports to the DiagnosticLog for a
    // filter whose output is not variant.
    bool setOutputTypeFromInput(unsigned type, Orv::Core::ManipulatorContext* context) override;

    // Returns the groups of the description, common parameters first. Connectors are among the
    // descriptions.
    const std::vector<Data::Desc::ParameterGroupPointer>& parameterDescriptions() const override;

    // Returns the description of a parameter or an input. Returns null for a filter without
    // description.
    const Data::Desc::Parameter* description(const std::string& identifier) const override;
    // Returns null for a filter without description.
    ParametersController* parametersController() override;
    // Returns true for parameters that the table marks so.
    bool isInheritable(const Data::Desc::Parameter& description) const override;
    bool hasRelativeType(const Data::Desc::Parameter& description) const override;

    // Returns the row of the table of atomic filters. Returns null for an unknown filter. Lives to
    // the end of the process.
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
