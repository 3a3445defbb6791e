#include "behavior/syncfunctioninstance.h"

#include "behavior/compinstancewriter.h"
#include "behavior/interfacememory.h"
#include "behavior/pathtarget.h"
#include "behavior/rounds.h"
#include "content/packageof.h"
#include "core/manipulatorcontext.h"
#include "data/content/functionmanipulators.h"
#include "data/datamessage.h"
#include "ksx/core/edit.h"
#include "ksx/core/follow.h"
#include "ksx/core/objecturl.h"
#include "ksx/core/stage.h"
#include <functional>

namespace Ksx::Core::Behavior {

namespace {

using namespace Data::Content;
using Orv::Core::ManipulatorContext;
using Orv::Core::ManipulatorStruct;
using Index = InstanceIndexOf<SyncFunctionInstance>;

void writeType(const ParamNode& node, unsigned type, ManipulatorContext& context)
{
    ManipulatorStruct<ParamNode>(node, context).type().value().setIfChanged(type);
}

// Gives the instance the type of the function to which its path leads, if there is one, and takes
// the connections to inputs that the function lacks.
void takeInterface(const ParamNode& node, ManipulatorContext& context)
{
    const Package* const package = isAttached(node) ? packageOf(node) : nullptr;
    const auto* function =
        package == nullptr
            ? nullptr
            : dynamic_cast<const Function*>(resolveObjectUrl(functionPathOf(node), *package));
    if (function == nullptr)
        return;
    writeType(node, function->type().value().get(), context);
    keepConnectionsTo(ManipulatorStruct<ParamNode>(node, context).connexions(),
                      Connectors(*function));
}

} // namespace

// Stands on a function, and remembers its inputs and its type.
class SyncFunctionInstance::FunctionWatcher final
    : public Orv::Core::ListenerSimple<Stage::Repair, ListChanges>
{
public:
    explicit FunctionWatcher(const Function& function)
        : m_function(&function), m_inputs(function.paraminputs(), &describeInput),
          m_type(function.type().value().get())
    {}
    bool isOwnedByShadow() const override { return true; }
    void deliver(const Orv::Data::DataMessage& message) override;

private:
    void writeTo(const InterfaceDiff& inputs, bool isTypeChanged,
                 ManipulatorContext& context) const;

    Orv::Data::DataPointerBox<Function> m_function;
    InterfaceMemory m_inputs;
    unsigned m_type;
    Rounds m_rounds;
};

void SyncFunctionInstance::FunctionWatcher::deliver(const Orv::Data::DataMessage& message)
{
    const Function* const function = m_function.get();
    if (function == nullptr || !isAttached(*function))
        return;
    const bool isOfInputs = message.object.get() == &function->paraminputs();
    const InterfaceDiff diff = isOfInputs
                                   ? m_inputs.follow(function->paraminputs(), &message)
                                   : m_inputs.follow(function->paraminputs(), std::vector<Uid>());
    const unsigned type = function->type().value().get();
    const bool isTypeChanged = type != m_type;
    if (diff.isEmpty() && !isTypeChanged)
        return;
    m_type = type;
    ManipulatorContext* const context = editableContext(message);
    // Types can chase each other where functions call each other in a circle.
    if (context != nullptr && m_rounds.next(message, 1))
        writeTo(diff, isTypeChanged, *context);
}

void SyncFunctionInstance::FunctionWatcher::writeTo(const InterfaceDiff& inputs, bool isTypeChanged,
                                                    ManipulatorContext& context) const
{
    PathTarget target(*m_function);
    const Connectors connectors(*m_function);
    for (const InstanceBehavior* behavior :
         Index::of(*m_function).find(m_function->identifier().get())) {
        const ParamNode* const node = static_cast<const SyncFunctionInstance*>(behavior)->node();
        const Package* const package =
            node == nullptr || !isAttached(*node) ? nullptr : packageOf(*node);
        if (package == nullptr || !isFunctionInstance(*node) ||
            !target.isNamedBy(behavior->path(), *package))
            continue;
        const auto connexions = ManipulatorStruct<ParamNode>(*node, context).connexions();
        followInputs(connexions, inputs);
        keepConnectionsTo(connexions, connectors);
        if (isTypeChanged)
            writeType(*node, m_type, context);
    }
}

SyncFunctionInstance::SyncFunctionInstance(const ParamNode& node)
    : m_node(&node), m_pathHash(std::hash<std::string_view>()(path()))
{
    Index::of(node).add(*this);
}

std::string_view SyncFunctionInstance::path() const
{
    return m_node ? std::string_view(functionPathOf(*m_node)) : std::string_view();
}

void SyncFunctionInstance::entered(const ParamNode& node, ManipulatorContext& context)
{
    takeInterface(node, context);
}

void SyncFunctionInstance::deliver(const Orv::Data::DataMessage& message)
{
    const std::size_t hash = std::hash<std::string_view>()(path());
    if (!m_node || hash == m_pathHash || !isAttached(*m_node))
        return;
    m_pathHash = hash;
    Index::of(*m_node).add(*this);
    if (ManipulatorContext* context = editableContext(message))
        takeInterface(*m_node, *context);
}

void SyncFunctionInstance::watch(const Function& function)
{
    const Orv::Data::ShadowObject* const shadow = function.paraminputs().shadow();
    if (shadow != nullptr && shadow->findListener<FunctionWatcher>() != nullptr)
        return;
    giveToShadows(std::make_unique<FunctionWatcher>(function),
                  {&function.paraminputs(), &function.type()});
}

} // namespace Ksx::Core::Behavior
