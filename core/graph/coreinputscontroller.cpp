#include "ksx/core/inputscontroller.h"

#include "data/content/graphmanipulators.h"
#include "data/desc/valuetype.h"
#include "ksx/core/edit.h"
#include "ksx/core/graphinterface.h"
#include "ksx/core/tweakinputcontroller.h"

namespace Ksx::Core {

namespace {

using Data::Content::Graph;
using Data::Content::ParamInput;
using Orv::Core::ManipulatorList;
using Orv::Data::DataPointerBox;
using Orv::Data::DataPointerBoxMasterKey;
using InputDocumentList = Orv::Data::ContainerList<ParamInput>;

constexpr const char* ClassName = "Ksx::Core::InputsController";

bool applyAddTweakInput(ManipulatorList<ParamInput> inputs, const DataPointerBoxMasterKey&,
                        InputsController::AddTweakInputInfo& info)
{
    info.uid = applyAddInput(inputs, {info.identifier, info.type});
    return true;
}

bool applyRemoveInput(ManipulatorList<ParamInput> inputs, const DataPointerBoxMasterKey&,
                      const DataPointerBox<ParamInput>& input)
{
    return inputs.erase(input);
}

} // namespace

InputsController::InputsController(const Graph& graph) : m_graph(&graph), m_inputs(callbacks())
{
    m_inputs.follow(graph.paraminputs());
}

InputsController::~InputsController() = default;

const Data::Content::Graph* InputsController::graph() const
{
    return m_graph.get();
}

InputsController::InputList::Callbacks InputsController::callbacks()
{
    InputList::Callbacks callbacks;
    callbacks.make = [this](const ParamInput& input) { return makeInput(input); };
    callbacks.added = [this](InputController&, std::size_t index, const Orv::Data::DataMessage&) {
        inputAdded(index);
    };
    callbacks.aboutToRemove = [this](InputController& input, std::size_t index) {
        inputAboutToRemove(index);
        m_byIdentifier.remove(input);
        m_byUid.remove(input);
        input.m_owner = nullptr;
    };
    callbacks.moved = [this] {
        m_byIdentifier.reorder();
        m_byUid.reorder();
        orderChanged();
    };
    return callbacks;
}

std::unique_ptr<InputController> InputsController::makeInput(const ParamInput& input)
{
    auto controller = InputController::make(input);
    controller->m_owner = this;
    m_byIdentifier.add(*controller, input.identifier().get());
    m_byUid.add(*controller, input.uid().get());
    return controller;
}

void InputsController::onKeys(InputController& input)
{
    m_byIdentifier.change(input, input.identifier());
    m_byUid.change(input, input.uid());
}

TweakInputController* InputsController::addTweakInput(std::uint32_t type,
                                                      const std::string& identifier)
{
    if (!m_graph || Data::Desc::ValueType::isImage(type))
        return nullptr;
    const DataPointerBox<InputsController> self(this); // which may die of the edit
    const DataPointerBox<InputDocumentList> list(&m_graph->paraminputs());
    const auto info = runEdit(list, AddTweakInputInfo{identifier, type}, &applyAddTweakInput,
                              historyText(ClassName, "ADD_TWEAK_INPUT_HISTORY_DESC"));
    return info && self ? dynamic_cast<TweakInputController*>(inputByUid(info->uid)) : nullptr;
}

bool InputsController::removeInput(InputController& input)
{
    if (!m_graph)
        return false;
    const DataPointerBox<InputDocumentList> list(&m_graph->paraminputs());
    return runEdit(list, DataPointerBox<ParamInput>(input.input()), &applyRemoveInput,
                   historyText(ClassName, "REMOVE_TWEAK_INPUT_HISTORY_DESC"))
        .has_value();
}

InputController* InputsController::inputByIdentifier(const std::string& identifier) const
{
    return m_graph ? m_byIdentifier.find(identifier, [this] { return inputs(); }) : nullptr;
}

InputController* InputsController::inputByUid(Uid uid) const
{
    return m_graph ? m_byUid.find(uid, [this] { return inputs(); }) : nullptr;
}

std::vector<InputController*> InputsController::inputs() const
{
    return m_graph ? m_inputs.controllers() : std::vector<InputController*>();
}

} // namespace Ksx::Core
