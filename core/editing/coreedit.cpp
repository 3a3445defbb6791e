#include "ksx/core/edit.h"

#include "core/icommandmanager.h"
#include "core/ilibraryservices.h"
#include "core/manipulatorcontext.h"
#include "core/transaction.h"
#include "data/datamessage.h"
#include "data/shadowobject.h"
#include <QCoreApplication>

namespace Ksx::Core {

bool executeCommand(const std::shared_ptr<Orv::Core::CommandModification>& command)
{
    const auto manager = Orv::Core::commandManager();
    return manager != nullptr ? manager->execute(command) : command->execute();
}

QString historyText(const char* className, const char* key)
{
    return QCoreApplication::translate(className, key);
}

Transaction::Transaction(const QString& history)
{
    Orv::Core::beginUndoableTransaction(history);
}

Transaction::~Transaction()
{
    Orv::Core::commitTransaction();
}

Orv::Core::ManipulatorContext* editableContext(const Orv::Data::DataMessage& message)
{
    auto* context = static_cast<Orv::Core::ManipulatorContext*>(message.context.access());
    return context == nullptr || context->isReplay() ? nullptr : context;
}

void listenTo(const Orv::Data::BaseObject& object, Orv::Data::ListenerBase& listener)
{
    // A listener changes nothing of what the document holds.
    Orv::Data::ShadowObject::of(const_cast<Orv::Data::BaseObject&>(object)).addListener(listener);
}

} // namespace Ksx::Core
