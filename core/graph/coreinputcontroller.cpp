#include "ksx/core/inputcontroller.h"

#include "content/constantvalue.h"
#include "data/content/graphmanipulators.h"
#include "data/desc/valuetype.h"
#include "graph/inputrange.h"
#include "ksx/core/edit.h"
#include "ksx/core/entryinputcontroller.h"
#include "ksx/core/inputscontroller.h"
#include "ksx/core/tweakinputcontroller.h"

namespace Ksx::Core {

namespace {

using Data::Content::ParamInput;
using Orv::Core::ManipulatorStruct;
using Orv::Data::DataPointerBoxMasterKey;
namespace ValueType = Data::Desc::ValueType;

const std::string NoText;

// `value` has the shape of the input's type.
bool applyDefaultValue(ManipulatorStruct<ParamInput> input, const DataPointerBoxMasterKey&,
                       const boost::any& value)
{
    input.defaultValue().set(makeConstant(input.get()->type().value().get(), value));
    return true;
}

} // namespace

std::unique_ptr<InputController> InputController::make(const ParamInput& input)
{
    if (ValueType::isImage(input.type().value().get()))
        return std::make_unique<EntryInputController>(input);
    return std::make_unique<TweakInputController>(input);
}

InputController::InputController(const ParamInput& input) : m_input(&input)
{
    listenTo(input.identifier(), m_identifierListener);
    listenTo(input.uid(), m_uidListener);
    listenTo(input.attributes().label(), m_labelListener);
    listenTo(input.attributes().description(), m_descriptionListener);
}

InputController::~InputController() = default;

const Data::Content::ParamInput* InputController::input() const
{
    return m_input.get();
}

Uid InputController::uid() const
{
    return m_input ? m_input->uid().get() : NoUid;
}

const std::string& InputController::identifier() const
{
    return m_input ? m_input->identifier().get() : NoText;
}

const std::string& InputController::label() const
{
    return m_input ? m_input->attributes().label().get() : NoText;
}

const std::string& InputController::description() const
{
    return m_input ? m_input->attributes().description().get() : NoText;
}

unsigned InputController::type() const
{
    return m_input ? m_input->type().value().get() : ValueType::Unknown;
}

boost::any InputController::defaultValue() const
{
    return m_input ? valueAs(type(), m_input->defaultValue().get()) : boost::any();
}

bool InputController::setDefaultValue(const boost::any& value)
{
    const boost::any shape = zeroOf(type());
    if (!m_input || shape.empty() || shape.type() != value.type() || !isStorable(value))
        return false;
    return runEdit(m_input, InputRange::of(*m_input).clamped(value), &applyDefaultValue, QString())
        .has_value();
}

void InputController::onIdentifier()
{
    if (m_owner != nullptr)
        m_owner->onKeys(*this);
    identifierChanged();
}

void InputController::onUid()
{
    if (m_owner != nullptr)
        m_owner->onKeys(*this);
}

} // namespace Ksx::Core
