// The controller of an input of a graph that takes an image.
#pragma once

#include "ksx/core/inputcontroller.h"

namespace Ksx::Core {

// Shows an input of images. A CompInputNodeController gives its image to the nodes of the graph. It
// has no default value. For life and thread see InputController.
class EntryInputController final : public InputController
{
public:
    // For InputController::make(). `input` is part of a document.
    explicit EntryInputController(const Data::Content::ParamInput& input);

    // Sent when the type has been written, from color to grayscale for one.
    LazySignal<> typeChanged;

private:
    Follow<&EntryInputController::typeChanged> m_typeListener{*this};
};

} // namespace Ksx::Core
