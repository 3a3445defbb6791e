// How controllers change a document: one undoable command per edit, several in a transaction.
#pragma once

#include "core/commandmodification.h"
#include "core/datamodification.h"
#include <QString>
#include <memory>
#include <optional>
#include <utility>

namespace Orv::Core {
class ManipulatorContext;
} // namespace Orv::Core

namespace Orv::Data {
class BaseObject;
class ListenerBase;
struct DataMessage;
} // namespace Orv::Data

namespace Ksx::Core {

// Runs a command on the command manager of the process, or directly where there is none. False if
// it was refused, and so rolled back.
bool executeCommand(const std::shared_ptr<Orv::Core::CommandModification>& command);

// The translation of a history key of a controller class, such as "Ksx::Core::PackageController".
QString historyText(const char* className, const char* key);

// One undoable edit: `function` is applied to the object in `target` with a copy of `payload`,
// under a history text that may be empty. Answers the payload as the function left it, in which
// edits hand out their results; none if the edit was refused or the target has died.
template <class T, class Payload, class Manipulator, class Argument>
std::optional<Payload>
runEdit(const Orv::Data::DataPointerBox<T>& target, Payload payload,
        bool (*function)(Manipulator, const Orv::Data::DataPointerBoxMasterKey&, Argument),
        const QString& history)
{
    if (!target)
        return std::nullopt;
    auto modification = Orv::Core::makeModification(target, std::move(payload), function);
    const auto* run = modification.get();
    const auto command =
        std::make_shared<Orv::Core::CommandModification>(std::move(modification), history);
    if (!executeCommand(command))
        return std::nullopt;
    return run->data();
}

// Groups the commands of one user-level edit for as long as it lives.
class Transaction
{
public:
    explicit Transaction(const QString& history);
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();
};

// The context in which a listener may edit further; null when the change is an undo or a redo,
// which bring back a state that was settled once and must not be edited on top, and null when the
// context has ended.
Orv::Core::ManipulatorContext* editableContext(const Orv::Data::DataMessage& message);

// Attaches a listener to a live document object outside of any edit. It hears of what changes from
// now on, also when an edit is under way.
void listenTo(const Orv::Data::BaseObject& object, Orv::Data::ListenerBase& listener);

} // namespace Ksx::Core
