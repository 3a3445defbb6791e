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
    if (!isDone) {
        context.m_rollback = true;
    } else if (context.enclosing() == nullptr) {
        m_undoScratch = scratch;
        m_redoScratch.reset();
    }
    context.close();
    return isDone;
}

bool CommandHistory::reverse(std::shared_ptr<HistoryScratch>& from,
                             std::shared_ptr<HistoryScratch>& to)
{
    // An edit that is under way may still be refused, and could not be reversed then.
    if (from == nullptr || ManipulatorContext::innermost() != nullptr)
        return false;
    const auto scratch = std::make_shared<HistoryScratch>();
    ManipulatorContext context(scratch);
    context.m_isReplay = true;
    try {
        from->undoAll(context);
    } catch (...) {
        context.m_rollback = true;
        context.close();
        from->append(*scratch); // what was reversed and has come back
        return false;
    }
    try {
        context.close();
    } catch (...) { // of a listener
        from = restore(*scratch);
        return false;
    }
    from.reset();
    to = scratch;
    return true;
}

// Brings the tree back to where `scratch` leads, whatever listeners throw on the way. Returns what
// reverses that.
std::shared_ptr<HistoryScratch> CommandHistory::restore(HistoryScratch& scratch)
{
    auto back = std::make_shared<HistoryScratch>(); // const would be copied on return
    ManipulatorContext context(back);
    context.m_isReplay = true;
    try {
        scratch.undoAll(context);
        context.close();
    } catch (...) { // a listener that cannot follow has been told as well as can be
    }
    return back;
}

bool CommandHistory::undo()
{
    return reverse(m_undoScratch, m_redoScratch);
}

bool CommandHistory::redo()
{
    return reverse(m_redoScratch, m_undoScratch);
}

bool CommandHistory::canMerge(const std::shared_ptr<ICommand>& other) const
{
    const auto* history = dynamic_cast<const CommandHistory*>(other.get());
    return history != nullptr && history != this && typeid(*history) == typeid(*this) &&
           !m_mergeKey.empty() && history->m_mergeKey == m_mergeKey;
}

bool CommandHistory::merge(const std::shared_ptr<ICommand>& other)
{
    if (m_undoScratch == nullptr || !canMerge(other))
        return false;
    auto& history = static_cast<CommandHistory&>(*other);
    if (history.m_undoScratch != nullptr)
        m_undoScratch->append(*history.m_undoScratch);
    return true;
}

std::size_t CommandHistory::undoSize() const
{
    return m_undoScratch == nullptr ? 0 : m_undoScratch->size();
}

} // namespace Orv::Core
