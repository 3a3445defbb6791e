#include "core/commandqueue.h"

#include "core/icommand.h"

namespace Orv::Core {

void CommandQueue::append(const std::shared_ptr<ICommand>& command)
{
    bool wasEmpty = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        wasEmpty = m_commands.empty();
        m_commands.push_back(command);
    }
    if (wasEmpty)
        queueNotEmpty();
}

std::shared_ptr<ICommand> CommandQueue::takeFirst()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_commands.empty())
        return nullptr;
    auto first = m_commands.front();
    m_commands.pop_front();
    return first;
}

std::size_t CommandQueue::remove(const std::shared_ptr<ICommand>& command)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const std::size_t before = m_commands.size();
    m_commands.remove(command);
    return before - m_commands.size();
}

std::size_t CommandQueue::size() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_commands.size();
}

} // namespace Orv::Core
