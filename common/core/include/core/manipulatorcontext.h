// One transaction on a document tree.
#pragma once

#include "data/manipulatorcontextbase.h"
#include <cstddef>
#include <memory>

namespace Orv::Core {

class HistoryScratch;

// What manipulators work in: it records how to reverse their changes and collects the notices.
// Made by the command layer alone, on the stack; a client that wants one runs a
// CommandDataModification. A context belongs to the thread that made it. The one of a command that
// runs inside an edit or inside a delivery hands its history and its notices to the enclosing
// context when it ends well, and leaves no trace when it is refused.
class ManipulatorContext final : public Data::ManipulatorContextBase
{
public:
    ManipulatorContext(const ManipulatorContext&) = delete;
    ManipulatorContext& operator=(const ManipulatorContext&) = delete;
    ~ManipulatorContext() override;

    // Returns true if the edit has been refused. Its end reverses it and delivers nothing.
    bool isRollback() const { return m_rollback; }
    // Returns true for an undo or a redo: listeners must not edit on top of it.
    bool isReplay() const { return m_isReplay; }
    // Returns the number of changes that the history has to reverse so far.
    std::size_t historySize() const;

private:
    friend class CommandHistory;
    friend class HistoryScratch;
    friend class ManipulatorBase;

    explicit ManipulatorContext(std::shared_ptr<HistoryScratch> scratch);
    // The open context of this thread; null outside of all edits.
    static ManipulatorContext* innermost();
    // The context within which this one was made; null for an outermost one.
    ManipulatorContext* enclosing() const;

    HistoryScratch& scratch() { return *m_scratch; }
    // Delivers and settles, or joins the enclosing context, or rolls back. Passes on what a
    // listener throws. The destructor does the same for a context that was not closed, except that
    // an exception ends the program.
    void close();

    std::shared_ptr<HistoryScratch> m_scratch;
    bool m_rollback = false;
    bool m_isReplay = false;
    bool m_isClosed = false;
};

} // namespace Orv::Core
