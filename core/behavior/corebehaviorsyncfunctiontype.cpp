#include "behavior/syncfunctiontype.h"

#include "behavior/functionroot.h"
#include "behavior/ownerof.h"
#include "data/content/functionmanipulators.h"
#include "data/datamessage.h"
#include "data/diagnosticlog.h"
#include "ksx/core/edit.h"
#include <optional>

namespace Ksx::Core::Behavior {

namespace {

using namespace Data::Content;
using Orv::Core::ManipulatorContext;
using Orv::Core::ManipulatorStruct;

// By this line the report is known.
constexpr int DifferentLine = 100;

// The type of the root node if the function's own is another.
std::optional<unsigned> wantedType(const Function& function)
{
    const ParamNode* const root = rootNodeOf(function.paramValue().get());
    if (root == nullptr || root->type().value().get() == function.type().value().get())
        return std::nullopt;
    return root->type().value().get();
}

void sync(const Function& function, ManipulatorContext& context)
{
    if (const auto wanted = wantedType(function))
        ManipulatorStruct<Function>(function, context).type().value().set(*wanted);
}

void reportDifferent(const Function& function)
{
    if (const auto wanted = wantedType(function))
        Orv::DiagnosticLog::write(
            Orv::LogLevel::Inconsistency, "core\\behavior\\corebehaviorsyncfunctiontype",
            DifferentLine,
            "Function type: " + std::to_string(function.type().value().get()) +
                " not synchronised with root node: " + std::to_string(*wanted) + " in function " +
                function.identifier().get());
}

} // namespace

void SyncFunctionType::entered(const Function& function, ManipulatorContext& context)
{
    sync(function, context);
}

void SyncFunctionType::deliver(const Orv::Data::DataMessage& message)
{
    const auto* function = message.object ? ownerOf<Function>(*message.object) : nullptr;
    if (function == nullptr)
        return;
    if (ManipulatorContext* context = editableContext(message))
        sync(*function, *context);
    else if (m_report.isDue(message, *function))
        reportDifferent(*function);
}

} // namespace Ksx::Core::Behavior
