#include "core/undostack.h"

#include "core/commandhistory.h"
#include "core/commandsignals.h"
#include "core/icommandmanager.h"
#include <iterator>
#include <utility>

namespace Orv::Core {

namespace {

using Commands = std::vector<std::shared_ptr<IUndoableCommand>>;

// Returns true for a command that has something to undo. One that was part of another edit has not.
bool isOfUse(const IUndoableCommand& command)
{
    const auto* const history = dynamic_cast<const CommandHistory*>(&command);
    return history == nullptr || history->undoSize() > 0;
}

// Calls `forth` for each command in turn. If one fails, calls `back` for those before it, the last
// one first, and returns false.
template <class Iterator>
bool runAll(Iterator begin, Iterator end, bool (IUndoableCommand::*forth)(),
            bool (IUndoableCommand::*back)())
{
    for (Iterator at = begin; at != end; ++at)
        if (!((**at).*forth)()) {
            while (at != begin)
                ((**--at).*back)();
            return false;
        }
    return true;
}

} // namespace

struct UndoStack::Connection
{
    boost::signals2::scoped_connection executed;
};

UndoStack::UndoStack(ICommandManager& manager) : m_connection(std::make_unique<Connection>())
{
    m_connection->executed = manager.executed().connect(
        [this](const std::shared_ptr<ICommand>& command) { keep(command); });
}

UndoStack::~UndoStack() = default;

bool UndoStack::canUndo() const
{
    return m_depth == 0 && !m_done.empty();
}

bool UndoStack::canRedo() const
{
    return m_depth == 0 && !m_undone.empty();
}

QString UndoStack::undoText() const
{
    return m_done.empty() ? QString() : m_done.back().text;
}

QString UndoStack::redoText() const
{
    return m_undone.empty() ? QString() : m_undone.back().text;
}

bool UndoStack::undo()
{
    if (!canUndo())
        return false;
    const Commands& commands = m_done.back().commands;
    if (!runAll(commands.rbegin(), commands.rend(), &IUndoableCommand::undo,
                &IUndoableCommand::redo))
        return false;
    m_undone.push_back(std::move(m_done.back()));
    m_done.pop_back();
    return true;
}

bool UndoStack::redo()
{
    if (!canRedo())
        return false;
    const Commands& commands = m_undone.back().commands;
    if (!runAll(commands.begin(), commands.end(), &IUndoableCommand::redo, &IUndoableCommand::undo))
        return false;
    m_done.push_back(std::move(m_undone.back()));
    m_undone.pop_back();
    return true;
}

bool UndoStack::takeBack(std::size_t count)
{
    Commands& commands = m_open.commands;
    if (count >= commands.size())
        return true;
    const auto first = commands.begin() + static_cast<std::ptrdiff_t>(count);
    if (!runAll(commands.rbegin(), std::make_reverse_iterator(first), &IUndoableCommand::undo,
                &IUndoableCommand::redo))
        return false;
    commands.erase(first, commands.end());
    return true;
}

void UndoStack::clear()
{
    m_done.clear();
    m_undone.clear();
    m_open.commands.clear();
}

void UndoStack::keep(const std::shared_ptr<ICommand>& command)
{
    if (const auto* const begin = dynamic_cast<const BeginGroupCommand*>(command.get()))
        beginGroup(begin->group().get());
    else if (dynamic_cast<const EndGroupCommand*>(command.get()) != nullptr)
        endGroup();
    else if (auto undoable = std::dynamic_pointer_cast<IUndoableCommand>(command))
        if (m_isRecording && isOfUse(*undoable))
            add(std::move(undoable));
}

void UndoStack::beginGroup(const ICommandGroup* group)
{
    if (m_depth++ != 0)
        return;
    m_open = Step{group != nullptr ? group->getName() : QString(), {}};
    m_isOpenOffered = dynamic_cast<const UndoableCommandGroup*>(group) != nullptr;
}

void UndoStack::endGroup()
{
    if (m_depth > 0 && --m_depth == 0)
        finish(std::exchange(m_open, Step()), m_isOpenOffered);
}

void UndoStack::add(std::shared_ptr<IUndoableCommand> command)
{
    if (m_depth > 0)
        m_open.commands.push_back(std::move(command));
    else
        finish(Step{command->getName(), {command}}, true);
}

void UndoStack::finish(Step step, bool isOffered)
{
    if (step.commands.empty())
        return;
    m_undone.clear();
    if (isOffered) {
        m_done.push_back(std::move(step));
    } else if (!m_done.empty()) { // without it, the step before could not be undone any more
        Commands& commands = m_done.back().commands;
        commands.insert(commands.end(), step.commands.begin(), step.commands.end());
    }
}

} // namespace Orv::Core
