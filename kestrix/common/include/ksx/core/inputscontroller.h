// The inputs of a graph.
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

// Owns a controller for each input, in the order of the graph's list. Owned by the controller of
// the graph and shared with its users; whoever keeps it longer than the graph lives finds it empty.
class InputsController : public Orv::SecuredObject
{
public:
    // The payload of the edit that adds an input.
    struct AddTweakInputInfo
    {
        std::string identifier; // may be empty
        std::uint32_t type = 0;
        Uid uid = NoUid; // filled by the edit
    };

    explicit InputsController(const Data::Content::Graph& graph);
    InputsController(const InputsController&) = delete;
    InputsController& operator=(const InputsController&) = delete;
    ~InputsController() override;

    // Null once it has died.
    const Data::Content::Graph* graph() const;

    // Appends an input that takes values of the type, under a unique identifier near to the given
    // one, or to the default if that is empty. Null if the graph has died, the type is that of an
    // image, or who heard of the input has taken it away again.
    TweakInputController* addTweakInput(std::uint32_t type, const std::string& identifier);
    // Removes an input of this graph, and with it its controller. What reads the input is left as
    // it is. False if the input has died.
    bool removeInput(InputController& input);

    // Null if there is none; the first one of several.
    InputController* inputByIdentifier(const std::string& identifier) const;
    InputController* inputByUid(Uid uid) const;
    std::vector<InputController*> inputs() const;

    LazySignal<std::size_t> inputAdded;         // at that place
    LazySignal<std::size_t> inputAboutToRemove; // from that place
    LazySignal<> orderChanged;

private:
    friend class InputController;
    struct Inputs;

    void onKeys(InputController& input); // its identifier or uid has changed

    Orv::Data::DataPointerBox<Data::Content::Graph> m_graph;
    std::unique_ptr<Inputs> m_inputs; // the controllers
};

} // namespace Ksx::Core
