#include "core/transaction.h"

#include "core/icommand.h"
#include "core/icommandmanager.h"
#include "core/ilibraryservices.h"
#include <QtGlobal>

namespace Orv::Core {

namespace {

void executeOrWarn(const std::shared_ptr<ICommand>& command, const char* warning)
{
    if (const auto manager = commandManager())
        manager->execute(command);
    else
        qWarning("%s", warning);
}

void beginGroup(std::shared_ptr<ICommandGroup> group)
{
    executeOrWarn(std::make_shared<BeginGroupCommand>(std::move(group)),
                  "No command manager available for transaction.");
}

} // namespace

void beginTransaction()
{
    beginGroup(std::make_shared<NotUndoableCommandGroup>());
}

void beginUndoableTransaction(const QString& name)
{
    beginGroup(std::make_shared<UndoableCommandGroup>(name));
}

void commitTransaction()
{
    executeOrWarn(std::make_shared<EndGroupCommand>(), "No command manager available for commit.");
}

} // namespace Orv::Core
