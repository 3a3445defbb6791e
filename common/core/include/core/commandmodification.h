// The command that runs a modification.
#pragma once

#include "core/commandhistory.h"
#include "core/datamodification.h"
#include <QString>
#include <memory>
#include <string>

namespace Orv::Core {

class CommandModification final : public CommandHistory
{
public:
    // `name` is the history text, which may be empty.
    CommandModification(std::unique_ptr<DataModificationBase> modification, const QString& name,
                        const std::string& mergeKey = {});

    // Where a caller finds the results of the edit.
    const DataModificationBase& modification() const { return *m_modification; }

protected:
    bool apply(ManipulatorContext& context) override;

private:
    std::unique_ptr<DataModificationBase> m_modification;
};

} // namespace Orv::Core
