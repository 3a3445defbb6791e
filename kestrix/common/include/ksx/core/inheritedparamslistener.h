// Tells that the parameters have changed which a node inherits.
#pragma once

#include "ksx/core/edit.h"
#include "ksx/core/follow.h"
#include "ksx/core/lazysignal.h"
#include "ksx/core/parametermodifier.h"
#include "ksx/core/stage.h"

namespace Ksx::Core {

// Follows the list of parameters of the graph in which a node stands. A parameter that is relative
// to the parent has its value from there.
class InheritedParamsListener final : public Orv::Core::ListenerSimple<Stage::Display, ListChanges>
{
public:
    using List = BaseParameterModifier::List;

    explicit InheritedParamsListener(const List& inherited) { listenTo(inherited, *this); }
    void deliver(const Orv::Data::DataMessage&) override { changed(); }

    LazySignal<> changed;
};

} // namespace Ksx::Core
