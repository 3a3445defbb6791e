#include "core/commandmodification.h"

#include "data/datapointerboxmasterkey.h"
#include <utility>

namespace Orv::Core {

CommandModification::CommandModification(std::unique_ptr<DataModificationBase> modification,
                                         const QString& name, const std::string& mergeKey)
    : CommandHistory(name, mergeKey), m_modification(std::move(modification))
{}

bool CommandModification::apply(ManipulatorContext& context)
{
    const Data::DataPointerBoxMasterKey key;
    return m_modification->execute(context, key);
}

} // namespace Orv::Core
