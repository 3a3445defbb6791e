// Finds and makes the controllers of graphs.
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

// Owns the controller of one graph. The shadow of the graph owns the listener, so the controller
// dies with the graph. It also dies when the graph is taken out of the document, at the end of that
// change. After an undo a new controller is made at the next request. Hears of no changes itself.
// Main thread.
//
// A client calls graphController() and does not need this class.
class GraphControllerListener final : public Orv::Core::ListenerDeaf<>
{
public:
    // Returns the Controller of a graph, and makes it at the first call. Returns null for an empty
    // box. Both classes must be complete. All callers must use one class of controllers for one
    // class of graphs.
    template <class Controller, class Graph>
    static Controller* of(const Orv::Data::DataPointerBox<Graph>& graph)
    {
        return graph ? static_cast<Controller*>(&controllerOf(*graph, &make<Controller, Graph>))
                     : nullptr;
    }

    ~GraphControllerListener() override;
    // Returns true: the shadow deletes the listener.
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

// Returns the controller of a graph of images. Makes it at the first call: all nodes get their
// controllers and are connected. That takes time that grows with the graph. Returns null for an
// empty box. The graph owns the controller. For function graphs see funcgraphcontroller.h.
CompGraphController* graphController(const Orv::Data::DataPointerBox<Data::Content::Graph>& graph);
// Returns the controller of the graph of an FX-map, in the same way.
ParamGraphController*
graphController(const Orv::Data::DataPointerBox<Data::Content::ParamsGraph>& graph);

} // namespace Ksx::Core
