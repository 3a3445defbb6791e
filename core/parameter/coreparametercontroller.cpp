#include "ksx/core/parametercontroller.h"

#include "core/listenersimple.h"
#include "data/changeevent.h"
#include "data/content/parameter.h"
#include "data/desc/parameter.h"
#include "ksx/core/edit.h"
#include "ksx/core/stage.h"
#include <utility>

namespace Ksx::Core {

namespace {

using Orv::Data::ChangeType;

using ParametersListener =
    Orv::Core::ListenerSimple<Stage::Display, ChangeType::Descendant | ChangeType::Inserted |
                                                  ChangeType::Erased | ChangeType::Moved>;

} // namespace

// Compares the parameter with what it was when its list last changed, and tells the difference.
class ParameterController::Watch final : public ParametersListener
{
public:
    explicit Watch(const ParameterController& controller)
        : m_controller(controller), m_state(stateOf(controller))
    {}

    void deliver(const Orv::Data::DataMessage&) override { check(); }

    void check()
    {
        const State former = std::exchange(m_state, stateOf(m_controller));
        const BaseParameterModifier* modifier = m_controller.modifier();
        if (modifier != nullptr ? !modifier->isValue(former.value) : !former.value.empty())
            changes.valueChanged();
        if (m_state.relativeTo != former.relativeTo)
            changes.relativeToChanged();
        if (m_state.isDynamic != former.isDynamic)
            changes.dynamicChanged();
    }

    ParameterSignals changes;

private:
    struct State
    {
        boost::any value;
        InheritanceMethod relativeTo;
        bool isDynamic;
    };

    static State stateOf(const ParameterController& controller)
    {
        return {controller.value(), controller.relativeTo(), controller.isDynamic()};
    }

    const ParameterController& m_controller;
    State m_state;
};

ParameterController::ParameterController(const ListBox& list,
                                         const Data::Desc::Parameter& description, bool hasNoInput)
    : m_list(list), m_description(&description),
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
    if (m_watch)
        m_watch->check();
}

} // namespace Ksx::Core
