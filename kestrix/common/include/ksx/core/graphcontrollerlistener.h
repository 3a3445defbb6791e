// Where the controller of a graph lives: on the graph's shadow.
#pragma once

#include "core/listenerdeaf.h"
#include "data/datapointerbox.h"
#include <memory>

namespace Orv::Data {
class BaseObject;
} // namespace Orv::Data

namespace Ksx::Data::Content {
class DynamicValue;
class Graph;
class ParamsGraph;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class CompGraphController;
class FuncGraphController;
class GraphController;
class ParamGraphController;

// Made at the first request and owned by the shadow: so the controller, too, lives and dies with
// the graph, and also dies when the graph is taken out of the document.
class GraphControllerListener final : public Orv::Core::ListenerDeaf<>
{
public:
    // Of a Graph, ParamsGraph or DynamicValue; null for any other object.
    static GraphController* controllerOf(const Orv::Data::BaseObject& object);

    ~GraphControllerListener() override;
    bool isOwnedByShadow() const override { return true; }

private:
    explicit GraphControllerListener(std::unique_ptr<GraphController> controller);

    std::unique_ptr<GraphController> m_controller;
};

// The controller of a graph, made at the first request, which takes time with the size of the
// graph. Null for an empty box. Owned by the graph.
CompGraphController* graphController(const Orv::Data::DataPointerBox<Data::Content::Graph>& graph);
ParamGraphController*
graphController(const Orv::Data::DataPointerBox<Data::Content::ParamsGraph>& graph);
FuncGraphController*
graphController(const Orv::Data::DataPointerBox<Data::Content::DynamicValue>& graph);

} // namespace Ksx::Core
