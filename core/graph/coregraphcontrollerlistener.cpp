#include "ksx/core/graphcontrollerlistener.h"

#include "data/content/graph.h"
#include "data/content/paramsgraph.h"
#include "data/shadowobject.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/listenerof.h"
#include "ksx/core/paramgraphcontroller.h"

namespace Ksx::Core {

GraphControllerListener::GraphControllerListener(std::unique_ptr<GraphController> controller)
    : m_controller(std::move(controller))
{}

GraphControllerListener::~GraphControllerListener() = default;

GraphController& GraphControllerListener::controllerOf(const Orv::Data::BaseObject& graph,
                                                       Maker make)
{
    if (const Orv::Data::ShadowObject* shadow = graph.shadow())
        if (auto* found = shadow->findListener<GraphControllerListener>())
            return *found->m_controller;
    std::unique_ptr<GraphControllerListener> made(new GraphControllerListener(make(graph)));
    return *giveToShadows(std::move(made), {&graph}).m_controller;
}

CompGraphController* graphController(const Orv::Data::DataPointerBox<Data::Content::Graph>& graph)
{
    return GraphControllerListener::of<CompGraphController>(graph);
}

ParamGraphController*
graphController(const Orv::Data::DataPointerBox<Data::Content::ParamsGraph>& graph)
{
    return GraphControllerListener::of<ParamGraphController>(graph);
}

} // namespace Ksx::Core
