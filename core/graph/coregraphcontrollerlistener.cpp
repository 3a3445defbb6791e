#include "ksx/core/graphcontrollerlistener.h"

#include "data/content/dynamicvalue.h"
#include "data/content/graph.h"
#include "data/content/paramsgraph.h"
#include "data/shadowobject.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/edit.h"
#include "ksx/core/funcgraphcontroller.h"
#include "ksx/core/paramgraphcontroller.h"

namespace Ksx::Core {

namespace {

using namespace Data::Content;

std::unique_ptr<GraphController> makeController(const Orv::Data::BaseObject& object)
{
    if (const auto* graph = dynamic_cast<const Graph*>(&object))
        return std::make_unique<CompGraphController>(*graph);
    if (const auto* graph = dynamic_cast<const ParamsGraph*>(&object))
        return std::make_unique<ParamGraphController>(*graph);
    if (const auto* graph = dynamic_cast<const DynamicValue*>(&object))
        return std::make_unique<FuncGraphController>(*graph);
    return nullptr;
}

template <class Controller, class Box>
Controller* controllerIn(const Box& graph)
{
    return graph ? dynamic_cast<Controller*>(GraphControllerListener::controllerOf(*graph))
                 : nullptr;
}

} // namespace

GraphControllerListener::GraphControllerListener(std::unique_ptr<GraphController> controller)
    : m_controller(std::move(controller))
{}

GraphControllerListener::~GraphControllerListener() = default;

GraphController* GraphControllerListener::controllerOf(const Orv::Data::BaseObject& object)
{
    if (const Orv::Data::ShadowObject* shadow = object.shadow())
        if (auto* found = shadow->findListener<GraphControllerListener>())
            return found->m_controller.get();
    std::unique_ptr<GraphController> controller = makeController(object);
    if (controller == nullptr)
        return nullptr;
    std::unique_ptr<GraphControllerListener> made(
        new GraphControllerListener(std::move(controller)));
    listenTo(object, *made);
    return made.release()->m_controller.get(); // the shadow owns it now
}

CompGraphController* graphController(const Orv::Data::DataPointerBox<Graph>& graph)
{
    return controllerIn<CompGraphController>(graph);
}

ParamGraphController* graphController(const Orv::Data::DataPointerBox<ParamsGraph>& graph)
{
    return controllerIn<ParamGraphController>(graph);
}

FuncGraphController* graphController(const Orv::Data::DataPointerBox<DynamicValue>& graph)
{
    return controllerIn<FuncGraphController>(graph);
}

} // namespace Ksx::Core
