// The common part of commands that change a tree: the way there and back.
#pragma once

#include "core/icommand.h"
#include <QString>
#include <cstddef>
#include <memory>
#include <string>

namespace Orv::Core {

class HistoryScratch;
class ManipulatorContext;

// A command that is new, done or undone. A new one has nothing to undo. Two commands of one class
// with the same merge key can be undone as one, unless the key is empty. It owns the objects that
// its edit took out of the tree.
//
// A command that runs inside an edit, or inside the delivery of one, is part of it. Its notices are
// delivered with the notices of the edit, and undoing the edit undoes it. It then has nothing to
// undo by itself. When it is refused, it leaves no trace in the edit. Main thread.
class CommandHistory : public UndoableCommand
{
public:
    // Runs the edit in a context of its own. Returns false if it was refused: the tree is as
    // before, and no listener was called. Passes on exceptions of the edit, which has then not been
    // rolled back. A command that is run again reverses its last run only.
    bool execute() final;

    // Reverses the last run. Returns false inside an edit, and without a run to reverse. Returns
    // false also if the tree has changed in other ways since then, or a listener throws. The tree
    // is then as before, and the command can be undone later.
    bool undo() final;
    // Runs an undone command again. Returns false in the same cases.
    bool redo() final;
    QString getName() const final { return m_name; }

    // Returns whether `other` is another command of the same class and merge key, and the key is
    // not empty.
    bool canMerge(const std::shared_ptr<ICommand>& other) const final;

    // Takes over the history of `other`. Returns false for a command that is not done: it has no
    // history that could go on.
    bool merge(const std::shared_ptr<ICommand>& other) final;
    // Returns the number of changes that an undo reverses.
    std::size_t undoSize() const;

protected:
    CommandHistory(const QString& name, const std::string& mergeKey);
    // Runs the edit. Returns false to refuse it.
    virtual bool apply(ManipulatorContext& context) = 0;

private:
    static bool reverse(std::shared_ptr<HistoryScratch>& from, std::shared_ptr<HistoryScratch>& to);
    static std::shared_ptr<HistoryScratch> restore(HistoryScratch& scratch);

    std::shared_ptr<HistoryScratch> m_undoScratch; // what reverses the last run
    std::shared_ptr<HistoryScratch> m_redoScratch; // what reverses the last undo
    QString m_name;
    std::string m_mergeKey;
};

} // namespace Orv::Core
