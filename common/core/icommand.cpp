#include "core/icommand.h"

namespace Orv::Core {

QString BeginGroupCommand::getName() const
{
    const QString name = QStringLiteral("BeginGroupCommand");
    return m_group == nullptr ? name : name + QStringLiteral(" (") + m_group->getName() + ')';
}

} // namespace Orv::Core
