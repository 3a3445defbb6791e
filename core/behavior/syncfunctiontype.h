// Keeps the type of functions right.
#pragma once

#include "behavior/reportonce.h"
#include "core/listenersimple.h"
#include "data/content/function.h"
#include "ksx/core/behavior/behaviors.h"
#include "ksx/core/datanotifier.h"
#include "ksx/core/follow.h"
#include "ksx/core/stage.h"

namespace Ksx::Core::Behavior {

// The type of a function is that of the node that gives its result; it is left alone where there is
// no such node. Looked after when the type or the body is edited. One object for all functions.
class SyncFunctionType final
    : public Orv::Core::ListenerSimple<Stage::Repair, ListChanges, Orv::Data::MessageMask::Content>,
      public BehaviorOf<Data::Content::Function>
{
public:
    static std::array<const Orv::Data::BaseObject*, 2>
    placesIn(const Data::Content::Function& function)
    {
        return {&function.paramValue(), &function.type()};
    }
    void entered(const Data::Content::Function& function, Orv::Core::ManipulatorContext& context);
    void deliver(const Orv::Data::DataMessage& message) override;

private:
    ReportOnce m_report;
};

} // namespace Ksx::Core::Behavior
