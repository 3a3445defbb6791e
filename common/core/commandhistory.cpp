#include "core/commandhistory.h"

#include "core/historyscratch.h"
#include "core/manipulatorcontext.h"
#include <typeinfo>
#include <utility>

namespace Orv::Core {

CommandHistory::CommandHistory(const QString& name, const std::string& mergeKey)
    : m_name(name), m_mergeKey(mergeKey)
{}

bool CommandHistory::execute()
{
    const auto scratch = std::make_shared<HistoryScratch>();
    ManipulatorContext context(scratch);
    bool isDone = false;
    try {
        isDone = apply(context);
    } catch (...) {
        context.close();
        throw;
    }
    if (isDone)
        m_undoScratch = scratch;
    else
        context.setRollback();
    context.close();
    return isDone;
}

bool CommandHistory::reverse(std::shared_ptr<HistoryScratch>& from,
                             std::shared_ptr<HistoryScratch>& to)
{
    try {
        to = std::make_shared<HistoryScratch>();
        ManipulatorContext context(to);
        context.setReplay();
        from->undoAll(context);
        from.reset();
        context.close();
        return true;
    } catch (...) {
        return false;
    }
}

bool CommandHistory::undo()
{
    return m_undoScratch != nullptr && reverse(m_undoScratch, m_redoScratch);
}

bool CommandHistory::redo()
{
    return m_redoScratch != nullptr && reverse(m_redoScratch, m_undoScratch);
}

bool CommandHistory::canMerge(const std::shared_ptr<ICommand>& other) const
{
    const auto* history = dynamic_cast<const CommandHistory*>(other.get());
    return history != nullptr && typeid(*history) == typeid(*this) && !m_mergeKey.empty() &&
           history->m_mergeKey == m_mergeKey;
}

bool CommandHistory::merge(const std::shared_ptr<ICommand>& other)
{
    if (!canMerge(other))
        return false;
    auto& history = static_cast<CommandHistory&>(*other);
    if (m_undoScratch != nullptr && history.m_undoScratch != nullptr)
        m_undoScratch->append(*history.m_undoScratch);
    return true;
}

} // namespace Orv::Core
