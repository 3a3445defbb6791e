// The signal that the parameters which a node inherits have changed.
#pragma once

#include "ksx/core/edit.h"
#include "ksx/core/follow.h"
#include "ksx/core/lazysignal.h"
#include "ksx/core/parametermodifier.h"
#include "ksx/core/stage.h"

namespace Ksx::Core {

// Follows the parameters of the graph that a node belongs to. A parameter of the node that is
// relative to the parent depends on them. Get it from ParametersController::inherited(), which owns
// it. Main thread.
class InheritedParamsListener final : public Orv::Core::ListenerSimple<Stage::Display, ListChanges>
{
public:
    using List = BaseParameterModifier::List;

    // Follows a list that is part of a document. The list may die first.
    explicit InheritedParamsListener(const List& inherited) { listenTo(inherited, *this); }
    void deliver(const Orv::Data::DataMessage&) override { changed(); }

    // Sent at the end of a change of the parameters: an edit, an undo or a redo.
    LazySignal<> changed;
};

} // namespace Ksx::Core
