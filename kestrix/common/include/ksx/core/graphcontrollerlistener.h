// Where the controller of a graph lives: on the graph's shadow.
#pragma once

#include "core/listenerdeaf.h"
#include "data/datapointerbox.h"
#include <memory>

namespace Orv::Data {
class BaseObject;
} // namespace Orv::Data

namespace Ksx::Data::Content {
class Graph;
class ParamsGraph;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class CompGraphController;
class GraphController;
class ParamGraphController;

// Owns the controller of one graph and is owned by the shadow of the graph. So the controller lives
// and dies with the graph. It also dies when the graph is taken out of the document.
class GraphControllerListener final : public Orv::Core::ListenerDeaf<>
{
public:
    // Returns the Controller of a graph, which is made at the first call. Returns null for an empty
    // box. The classes must be complete; a kind of graph has one class of controllers.
    template <class Controller, class Graph>
    static Controller* of(const Orv::Data::DataPointerBox<Graph>& graph)
    {
        return graph ? static_cast<Controller*>(&controllerOf(*graph, &make<Controller, Graph>))
                     : nullptr;
    }

    ~GraphControllerListener() override;
    bool isOwnedByShadow() const override { return true; }

private:
    using Maker = std::unique_ptr<GraphController> (*)(const Orv::Data::BaseObject&);

    template <class Controller, class Graph>
    static std::unique_ptr<GraphController> make(const Orv::Data::BaseObject& graph)
    {
        return std::make_unique<Controller>(static_cast<const Graph&>(graph));
    }

    explicit GraphControllerListener(std::unique_ptr<GraphController> controller);
    static GraphController& controllerOf(const Orv::Data::BaseObject& graph, Maker make);

    std::unique_ptr<GraphController> m_controller;
};

// Returns the controller of a graph, which is made at the first call, in a time that grows with the
// graph. Returns null for an empty box. The graph owns the controller. For function graphs see
// funcgraphcontroller.h.
CompGraphController* graphController(const Orv::Data::DataPointerBox<Data::Content::Graph>& graph);
ParamGraphController*
graphController(const Orv::Data::DataPointerBox<Data::Content::ParamsGraph>& graph);

} // namespace Ksx::Core
