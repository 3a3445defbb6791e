// The controller of an input of a graph that takes a value.
#pragma once

#include "ksx/core/inputcontroller.h"
#include <string>

namespace Ksx::Data::Desc {
struct Parameter;
} // namespace Ksx::Data::Desc

namespace Ksx::Core {

// Shows an input of values, which users of the graph set. Functions in the graph read it by its
// identifier. The two functions below make the input look like the parameter or input that it is
// going to drive. For life and thread see InputController.
class TweakInputController final : public InputController
{
public:
    // For InputController::make(). `input` is part of a document.
    explicit TweakInputController(const Data::Content::ParamInput& input);

    // Makes the input look like a parameter of a node. That is its type, identifier, label,
    // description, default value and widget with its options. A parameter with a list of values
    // gets a drop-down list. `group` is the group of the input; an empty text gives the group of
    // the description.
    //
    // The identifier is brought into legal form. It gets a number if another input has it. This is
    // one undoable command without history text. Returns false if the input has died.
    bool initFromDescription(const Data::Desc::Parameter& description,
                             const std::string& group = {});

    // Makes the input look like an input of another graph: its texts, type, default value and
    // widget. The identifier gets a number if another input has it. This is one undoable command
    // without history text. Returns false if the input has died.
    bool initFromInput(const Data::Content::ParamInput& source);
};

} // namespace Ksx::Core
