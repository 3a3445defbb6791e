// The command that runs any function in a context.
#pragma once

#include "core/commandhistory.h"
#include <QString>
#include <functional>
#include <string>

namespace Orv::Core {

// Runs a function that changes the tree through manipulators in its context. A result of false
// refuses the edit.
class CommandDataModification final : public CommandHistory
{
public:
    using Function = std::function<bool(ManipulatorContext&)>;

    // `name` is the history text, which may be empty. An empty function throws
    // boost::bad_function_call when the command is executed.
    CommandDataModification(Function function, const QString& name,
                            const std::string& mergeKey = {});

protected:
    bool apply(ManipulatorContext& context) override;

private:
    Function m_function;
};

} // namespace Orv::Core
