#include "ksx/core/entryinputcontroller.h"

#include "data/content/paraminput.h"
#include "ksx/core/edit.h"

namespace Ksx::Core {

EntryInputController::EntryInputController(const Data::Content::ParamInput& input)
    : InputController(input)
{
    listenTo(input.type().value(), m_typeListener);
}

} // namespace Ksx::Core
