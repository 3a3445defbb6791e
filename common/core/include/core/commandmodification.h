// The command that runs a modification.
#pragma once

#include "core/commandhistory.h"
#include "core/datamodification.h"
#include <QString>
#include <memory>
#include <string>

namespace Orv::Core {

// Runs a DataModification and remembers how to reverse it. Run it by ICommandManager::execute().
// See CommandHistory.
class CommandModification final : public CommandHistory
{
public:
    // Takes the modification over. `name` is the history text, which may be empty. Two commands
    // with one `mergeKey` can be undone as one, unless it is empty.
    CommandModification(std::unique_ptr<DataModificationBase> modification, const QString& name,
                        const std::string& mergeKey = {});

    // Returns the modification, in which a caller finds the results of the edit.
    const DataModificationBase& modification() const { return *m_modification; }

protected:
    bool apply(ManipulatorContext& context) override;

private:
    std::unique_ptr<DataModificationBase> m_modification;
};

} // namespace Orv::Core
