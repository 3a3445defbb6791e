// The controller of the inputs of a graph.
#pragma once

#include "data/datapointerbox.h"
#include "data/securedobject.h"
#include "ksx/core/inputcontroller.h"
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Ksx::Data::Content {
class Graph;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class TweakInputController;

// Lists, adds and removes the inputs of a graph. It owns a controller for each input, in the order
// of the list of the document, and follows that list.
//
// Get it from CompGraphController::inputsController(). The controller of the graph shares it with
// its users. Who edits nothing but inputs may make one of his own: no node gets a controller then.
//
// A user may keep it longer than the graph lives. It is empty then and refuses edits. Main thread.
class InputsController : public Orv::SecuredObject
{
public:
    // The payload of the edit that adds an input.
    struct AddTweakInputInfo
    {
        // The identifier that is wanted. An empty text gives the default.
        std::string identifier;
        // One ValueType.
        std::uint32_t type = 0;
        // The uid of the new input. The edit fills it.
        Uid uid = NoUid;
    };

    // `graph` is part of a document.
    explicit InputsController(const Data::Content::Graph& graph);
    InputsController(const InputsController&) = delete;
    InputsController& operator=(const InputsController&) = delete;
    ~InputsController() override;

    // Returns the graph. Returns null once it has died.
    const Data::Content::Graph* graph() const;

    // Appends an input that takes values of `type`. The identifier is brought into legal form and
    // gets a number if it is taken. An empty identifier gives the default. This is one undoable
    // command.
    //
    // Returns the controller of the input. Returns null and changes nothing if the graph has died
    // and for a type of images. Returns null also if a subscriber has removed the input again.
    TweakInputController* addTweakInput(std::uint32_t type, const std::string& identifier);

    // Removes an input of this graph and destroys its controller. Functions and nodes that read the
    // input are left as they are; see switchToConstant(). This is one undoable command. Returns
    // false and changes nothing if the input or the graph has died, and for an input of another
    // graph.
    bool removeInput(InputController& input);

    // Returns the first input of an identifier. Returns null if there is none. Takes constant time,
    // except after a change if several inputs have one identifier.
    InputController* inputByIdentifier(const std::string& identifier) const;
    // Returns the first input of a uid. Returns null if there is none.
    InputController* inputByUid(Uid uid) const;

    // Returns the controllers of all inputs, in the order of the document. Returns nothing once the
    // graph has died.
    std::vector<InputController*> inputs() const;

    // Sent when an input has come, with its place in `paraminputs`.
    LazySignal<std::size_t> inputAdded;

    // Sent when an input has left the document, before its controller dies. The index is the former
    // place.
    LazySignal<std::size_t> inputAboutToRemove;
    // Sent when inputs have changed their order.
    LazySignal<> orderChanged;

private:
    friend class InputController;
    struct Inputs;

    void onKeys(InputController& input); // its identifier or uid has changed

    Orv::Data::DataPointerBox<Data::Content::Graph> m_graph;
    std::unique_ptr<Inputs> m_inputs; // the controllers
};

} // namespace Ksx::Core
