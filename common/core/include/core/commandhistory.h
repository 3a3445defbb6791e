// What the commands around one edit share: the way there and back.
#pragma once

#include "core/icommand.h"
#include <QString>
#include <memory>
#include <string>

namespace Orv::Core {

class HistoryScratch;
class ManipulatorContext;

// New (nothing to undo), done or undone. Two commands of one class with the same merge key, if it
// is not empty, can be undone as one. Owns what its edit took out of the tree.
class CommandHistory : public UndoableCommand
{
public:
    // Runs the edit in a context of its own. On false the tree is as before, and nobody was told.
    // What the edit throws passes through; it has then not been rolled back.
    bool execute() final;
    // Any exception on the way answers false.
    bool undo() final;
    bool redo() final;
    QString getName() const final { return m_name; }
    bool canMerge(const std::shared_ptr<ICommand>& other) const final;
    bool merge(const std::shared_ptr<ICommand>& other) final;

protected:
    CommandHistory(const QString& name, const std::string& mergeKey);
    virtual bool apply(ManipulatorContext& context) = 0;

private:
    bool reverse(std::shared_ptr<HistoryScratch>& from, std::shared_ptr<HistoryScratch>& to);

    std::shared_ptr<HistoryScratch> m_undoScratch; // what reverses the last run
    std::shared_ptr<HistoryScratch> m_redoScratch; // what reverses the last undo
    QString m_name;
    std::string m_mergeKey;
};

} // namespace Orv::Core
