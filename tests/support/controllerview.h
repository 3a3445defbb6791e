// What the controllers of a graph show, as text, for comparison.
#pragma once

#include "data/content/compoutput.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/compnodecontroller.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/inputcontroller.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/outputconnectorcontroller.h"
#include "ksx/core/outputcontroller.h"
#include "ksx/core/parametercontroller.h"
#include "ksx/core/parameterscontroller.h"
#include "ksx/core/rootoutputcontroller.h"
#include <algorithm>
#include <sstream>
#include <string>

namespace TestSupport {

// The place of a controller among others, -1 if it is none of them.
template <class Controllers>
std::ptrdiff_t placeOf(const Controllers& controllers, const void* controller)
{
    const auto found = std::find_if(controllers.begin(), controllers.end(),
                                    [controller](const auto* c) { return c == controller; });
    return found == controllers.end() ? -1 : found - controllers.begin();
}

// The connectors of a node, with those at the other ends of their connections in their order.
inline std::string viewOf(const Ksx::Core::NodeController& node)
{
    using namespace Ksx::Core;
    std::ostringstream text;
    const auto nodes = node.graph().nodes();
    for (std::size_t i = 0; i < node.inputConnectorCount(); ++i) {
        const InputConnectorController& input = *node.inputConnector(i);
        text << " in " << input.identifier() << '/' << input.label().toStdString() << '/'
             << node.connectorType(input.identifier()) << '/'
             << node.isVariantConnector(input.identifier());
        for (const ConnectorController* source : input.targets())
            text << '<' << placeOf(nodes, &source->node()) << '.'
                 << static_cast<const OutputConnectorController*>(source)->outputUid();
    }
    for (std::size_t i = 0; i < node.outputConnectorCount(); ++i) {
        const OutputConnectorController& output = *node.outputConnector(i);
        text << " out " << output.outputUid() << '/' << output.identifier() << '/'
             << output.label().toStdString() << '/' << output.type();
        for (const ConnectorController* target : output.targets())
            text << '>' << placeOf(nodes, &target->node()) << '.'
                 << static_cast<const InputConnectorController*>(target)->identifier();
    }
    return text.str();
}

// All nodes, and which of them is found under each uid.
inline std::string viewOf(const Ksx::Core::GraphController& graph)
{
    std::ostringstream text;
    const auto nodes = graph.nodes();
    for (const Ksx::Core::NodeController* node : nodes)
        text << node->uid() << " found at " << placeOf(nodes, graph.nodeByUid(node->uid()))
             << " type " << node->outputType() << '/' << node->primaryType() << viewOf(*node)
             << '\n';
    return text.str();
}

inline std::string viewOf(Ksx::Core::ParametersController& parameters)
{
    std::ostringstream text;
    for (std::size_t i = 0; i < parameters.count(); ++i) {
        const Ksx::Core::ParameterController& parameter = parameters.at(i);
        text << ' ' << parameter.identifier() << '/'
             << static_cast<unsigned>(parameter.relativeTo()) << parameter.isDynamic()
             << (parameter.stored() != nullptr) << '/';
        const boost::any value = parameter.value();
        if (const auto* number = boost::any_cast<Orv::Data::Float1>(&value))
            text << (*number)[0];
        if (const auto* number = boost::any_cast<unsigned>(&value))
            text << *number;
    }
    return text.str() + '\n';
}

inline std::string viewOf(Ksx::Core::CompGraphController& graph)
{
    using namespace Ksx::Core;
    std::ostringstream text;
    const InputsController& inputs = *graph.inputsController();
    for (const InputController* input : inputs.inputs())
        text << "input " << input->uid() << ' ' << input->identifier() << ' ' << input->type()
             << " found at " << placeOf(inputs.inputs(), inputs.inputByUid(input->uid())) << ' '
             << placeOf(inputs.inputs(), inputs.inputByIdentifier(input->identifier())) << '\n';
    for (const OutputController* output : graph.outputs())
        text << "output " << output->uid() << ' ' << output->identifier() << '\n';
    for (const RootOutputController* output : graph.rootOutputs())
        text << "root output " << output->outputUid() << " found at "
             << placeOf(graph.rootOutputs(), graph.rootOutput(output->outputUid())) << '\n';
    text << viewOf(graph.parametersController());
    for (NodeController* node : graph.nodes())
        if (auto* parameters = static_cast<CompNodeController*>(node)->parametersController())
            text << viewOf(*parameters);
    return text.str() + viewOf(static_cast<const GraphController&>(graph));
}

} // namespace TestSupport
