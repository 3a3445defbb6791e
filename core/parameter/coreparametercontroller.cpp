#include "ksx/core/parametercontroller.h"

#include "content/nodekind.h"
#include "core/listenersimple.h"
#include "data/changeevent.h"
#include "data/content/parameter.h"
#include "data/desc/parameter.h"
#include "ksx/core/edit.h"
#include "ksx/core/inheritedparamslistener.h"
#include "ksx/core/lazysignalconnect.h"
#include "ksx/core/stage.h"
#include <utility>

namespace Ksx::Core {

namespace {

using ParametersListener = Orv::Core::ListenerSimple<Stage::Display, ListChanges>;

} // namespace

// Compares the parameter, and the one of the graph that it may follow, with what they were when their
// lists last changed, and tells the difference.
class ParameterController::Watch final : public ParametersListener
{
public:
    explicit Watch(const ParameterController& controller)
        : m_controller(controller), m_inherited(controller.inheritedModifier()),
          m_state(stateOf(controller.modifier())), m_inheritedState(stateOf(m_inherited.get()))
    {
        if (!controller.m_inherited)
            return;
        m_inheritedListener = std::make_unique<InheritedParamsListener>(*controller.m_inherited);
        m_inheritedListener->changed.connect([this] { check(); });
    }

    void deliver(const Orv::Data::DataMessage&) override { check(); }
    void describe() { m_inherited = m_controller.inheritedModifier(); }

    void check()
    {
        const State former = std::exchange(m_state, stateOf(m_controller.modifier()));
        const State formerInherited = std::exchange(m_inheritedState, stateOf(m_inherited.get()));
        const bool hasOtherMode = m_state.relativeTo != former.relativeTo;
        const bool isOtherwiseDynamic = m_state.isDynamic != former.isDynamic;
        const bool hasOtherValue = !isValue(m_controller.modifier(), former.value) ||
                                   (m_state.relativeTo == InheritanceMethod::RelativeToParent &&
                                    (!isValue(m_inherited.get(), formerInherited.value) ||
                                     m_inheritedState.relativeTo != formerInherited.relativeTo ||
                                     m_inheritedState.isDynamic != formerInherited.isDynamic));
        // Who hears of one of them may take the parameter away.
        const Orv::Data::DataPointerBox<ParameterController> controller(&m_controller);
        if (hasOtherValue)
            changes.valueChanged();
        if (controller && hasOtherMode)
            changes.relativeToChanged();
        if (controller && isOtherwiseDynamic)
            changes.dynamicChanged();
    }

    ParameterSignals changes;

private:
    struct State
    {
        boost::any value;
        InheritanceMethod relativeTo = InheritanceMethod::Absolute;
        bool isDynamic = false;
    };

    static State stateOf(const BaseParameterModifier* modifier)
    {
        if (modifier == nullptr)
            return {};
        return {modifier->anyValue(), modifier->relativeTo(), modifier->isDynamic()};
    }
    static bool isValue(const BaseParameterModifier* modifier, const boost::any& value)
    {
        return modifier == nullptr ? value.empty() : modifier->isValue(value);
    }

    const ParameterController& m_controller;
    std::unique_ptr<BaseParameterModifier> m_inherited; // null where nothing can be inherited
    State m_state;
    State m_inheritedState;
    std::unique_ptr<InheritedParamsListener> m_inheritedListener;
};

ParameterController::ParameterController(const ListBox& list,
                                         const Data::Desc::Parameter& description, bool hasNoInput,
                                         const ListBox& inherited)
    : m_list(list), m_inherited(inherited), m_description(&description),
      m_modifier(makeParameterModifier(list, description, hasNoInput))
{}

ParameterController::~ParameterController() = default;

const std::string& ParameterController::identifier() const
{
    return m_description->identifier;
}

boost::any ParameterController::value() const
{
    return m_modifier ? m_modifier->anyValue() : boost::any();
}

InheritanceMethod ParameterController::relativeTo() const
{
    return m_modifier ? m_modifier->relativeTo() : InheritanceMethod::Absolute;
}

bool ParameterController::isDynamic() const
{
    return m_modifier && m_modifier->isDynamic();
}

const Data::Content::Parameter* ParameterController::stored() const
{
    return m_modifier ? m_modifier->stored() : nullptr;
}

bool ParameterController::setValue(const boost::any& value)
{
    return m_modifier && m_modifier->setValue(value);
}

bool ParameterController::setRelativeTo(InheritanceMethod method)
{
    return m_modifier && m_modifier->setRelativeTo(method);
}

void ParameterController::linkToInput(const InputReference& input)
{
    if (m_modifier)
        m_modifier->linkToInput(input);
}

bool ParameterController::makeDynamic()
{
    return m_modifier && m_modifier->makeDynamic();
}

const Data::Content::DynamicValue* ParameterController::computedValue() const
{
    const Data::Content::Parameter* const parameter = stored();
    return parameter == nullptr ? nullptr : computedValueOf(parameter->paramValue());
}

ParameterSignals& ParameterController::changes()
{
    if (!m_watch) {
        m_watch = std::make_unique<Watch>(*this);
        if (m_list)
            listenTo(*m_list, *m_watch);
    }
    return m_watch->changes;
}

void ParameterController::setDescription(const Data::Desc::Parameter& description, bool hasNoInput)
{
    m_description = &description;
    m_modifier = makeParameterModifier(m_list, description, hasNoInput);
    if (!m_watch)
        return;
    m_watch->describe();
    m_watch->check();
}

std::unique_ptr<BaseParameterModifier> ParameterController::inheritedModifier() const
{
    return m_inherited ? makeParameterModifier(m_inherited, *m_description, true) : nullptr;
}

} // namespace Ksx::Core
