// What the commands around one edit share: the way there and back.
#pragma once

#include "core/icommand.h"
#include <QString>
#include <cstddef>
#include <memory>
#include <string>

namespace Orv::Core {

class HistoryScratch;
class ManipulatorContext;

// New (nothing to undo), done or undone. Two commands of one class with the same merge key, if it
// is not empty, can be undone as one. Owns what its edit took out of the tree.
//
// A command that runs inside an edit, or inside the delivery of one, is part of it. Its notices are
// delivered with those of the edit, and undoing the edit undoes it. It then has nothing to undo by
// itself. When it is refused, it leaves no trace in the edit.
class CommandHistory : public UndoableCommand
{
public:
    // Runs the edit in a context of its own. On false the tree is as before, and nobody was told.
    // What the edit throws passes through; it has then not been rolled back. A command that is run
    // again when it is done or undone reverses its last run only.
    bool execute() final;
    // Returns false inside an edit, and without a run to reverse. Returns false also when the tree
    // has changed in other ways since then, or a listener throws. The tree is then as before, and
    // the command keeps what it had to reverse.
    bool undo() final;
    bool redo() final;
    QString getName() const final { return m_name; }
    bool canMerge(const std::shared_ptr<ICommand>& other) const final;
    // Returns false for a command that is not done: it has no history that could go on.
    bool merge(const std::shared_ptr<ICommand>& other) final;
    // Returns the number of changes that an undo reverses.
    std::size_t undoSize() const;

protected:
    CommandHistory(const QString& name, const std::string& mergeKey);
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
