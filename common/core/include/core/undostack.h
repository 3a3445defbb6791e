// The steps that a user can undo.
#pragma once

#include <QString>
#include <cstddef>
#include <memory>
#include <vector>

namespace Orv::Core {

class ICommand;
class ICommandGroup;
class ICommandManager;
class IUndoableCommand;

// Listens to a command manager, and keeps the commands that changed a document. A command is a step
// by itself, and all commands of a transaction are one step. Commands that were part of another edit
// belong to its step. A group that a user is not offered to undo joins the step before it.
//
// A new step drops the steps that were undone. Objects that an edit removed live as long as its
// step. The manager must outlive the stack. Main thread.
//
//     UndoStack steps(manager);
//     beginUndoableTransaction("Rename all");
//     ...
//     commitTransaction();
//     steps.undo();
class UndoStack
{
public:
    // Knows the commands that run from now on.
    explicit UndoStack(ICommandManager& manager);
    UndoStack(const UndoStack&) = delete;
    UndoStack& operator=(const UndoStack&) = delete;
    ~UndoStack();

    // Returns whether there is a step to undo, outside of a transaction.
    bool canUndo() const;
    // Returns whether there is a step to redo, outside of a transaction.
    bool canRedo() const;
    // Returns the text of the step that undo() reverses. May be empty.
    QString undoText() const;
    // Returns the text of the step that redo() runs again. May be empty.
    QString redoText() const;

    // Reverses the last step. Returns false and changes nothing if there is none, inside a
    // transaction, and if the document has changed in other ways since then.
    bool undo();
    // Runs the step again that was undone last. Returns false and changes nothing in the same cases.
    bool redo();

    // Returns the number of steps that undo() can reverse.
    std::size_t undoCount() const { return m_done.size(); }
    // Returns the number of steps that redo() can run again.
    std::size_t redoCount() const { return m_undone.size(); }
    // Forgets all steps.
    void clear();
    // Returns the number of commands of the transaction that is open. Returns 0 outside of one.
    std::size_t openCount() const { return m_open.commands.size(); }
    // Reverses the commands of the open transaction except the first `count`, and forgets them. Use
    // it for an edit that failed half way. Returns false and changes nothing if one of them cannot
    // be reversed.
    bool takeBack(std::size_t count);
    // Chooses whether commands become steps. They do at first. Nobody can undo a command that ran
    // meanwhile, and a step before it only if it has left alone what the step changed.
    void setRecording(bool isRecording) { m_isRecording = isRecording; }

private:
    struct Step
    {
        QString text;
        std::vector<std::shared_ptr<IUndoableCommand>> commands;
    };
    struct Connection;

    void keep(const std::shared_ptr<ICommand>& command);
    void beginGroup(const ICommandGroup* group);
    void endGroup();
    void add(std::shared_ptr<IUndoableCommand> command);
    void finish(Step step, bool isOffered);

    std::vector<Step> m_done;
    std::vector<Step> m_undone;
    Step m_open;                  // of the outermost transaction
    bool m_isOpenOffered = false; // a user can undo it
    std::size_t m_depth = 0;      // of transactions
    bool m_isRecording = true;
    std::unique_ptr<Connection> m_connection;
};

} // namespace Orv::Core
