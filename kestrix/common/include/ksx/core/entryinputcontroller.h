// An input of a graph that takes an image.
#pragma once

#include "ksx/core/inputcontroller.h"

namespace Ksx::Core {

class EntryInputController final : public InputController
{
public:
    explicit EntryInputController(const Data::Content::ParamInput& input);

    LazySignal<> typeChanged; // the color mode

private:
    Follow<&EntryInputController::typeChanged> m_typeListener{*this};
};

} // namespace Ksx::Core
