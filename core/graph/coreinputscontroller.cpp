#include "ksx/core/inputscontroller.h"

#include "data/content/graphmanipulators.h"
#include "data/desc/valuetype.h"
#include "editing/controllerindex.h"
#include "editing/controllerlist.h"
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

// The controllers of the inputs, in the order of the document, and their keys.
struct InputsController::Inputs
{
    using List = ControllerList<ParamInput, InputController>;

    explicit Inputs(InputsController& controller) : owner(controller), list(callbacks()) {}

    List::Callbacks callbacks();
    std::unique_ptr<InputController> make(const ParamInput& input);

    InputsController& owner;
    ControllerIndex<std::string, InputController, &InputController::m_knownIdentifier> byIdentifier;
    ControllerIndex<Uid, InputController, &InputController::m_knownUid> byUid;
    List list;
};

InputsController::Inputs::List::Callbacks InputsController::Inputs::callbacks()
{
    List::Callbacks callbacks;
    callbacks.make = [this](const ParamInput& input) { return make(input); };
    callbacks.added = [this](InputController&, std::size_t index, const Orv::Data::DataMessage&) {
        owner.inputAdded(index);
    };
    callbacks.aboutToRemove = [this](InputController& input, std::size_t index) {
        owner.inputAboutToRemove(index);
        byIdentifier.remove(input);
        byUid.remove(input);
        input.m_owner = nullptr;
    };
    callbacks.moved = [this] {
        byIdentifier.reorder();
        byUid.reorder();
        owner.orderChanged();
    };
    return callbacks;
}

std::unique_ptr<InputController> InputsController::Inputs::make(const ParamInput& input)
{
    auto controller = InputController::make(input);
    controller->m_owner = &owner;
    byIdentifier.add(*controller, input.identifier().get());
    byUid.add(*controller, input.uid().get());
    return controller;
}

InputsController::InputsController(const Graph& graph)
    : m_graph(&graph), m_inputs(std::make_unique<Inputs>(*this))
{
    m_inputs->list.follow(graph.paraminputs());
}

InputsController::~InputsController() = default;

const Data::Content::Graph* InputsController::graph() const
{
    return m_graph.get();
}

void InputsController::onKeys(InputController& input)
{
    m_inputs->byIdentifier.change(input, input.identifier());
    m_inputs->byUid.change(input, input.uid());
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
    return m_graph ? m_inputs->byIdentifier.find(identifier, [this] { return inputs(); }) : nullptr;
}

InputController* InputsController::inputByUid(Uid uid) const
{
    return m_graph ? m_inputs->byUid.find(uid, [this] { return inputs(); }) : nullptr;
}

std::vector<InputController*> InputsController::inputs() const
{
    return m_graph ? m_inputs->list.controllers() : std::vector<InputController*>();
}

} // namespace Ksx::Core
