// One transaction on a document tree.
#pragma once

#include "data/manipulatorcontextbase.h"
#include <memory>

namespace Orv::Core {

class HistoryScratch;

// What manipulators work in: it records how to reverse their changes and collects the notices.
// Made by the command layer alone, on the stack; a client that wants one runs a
// CommandDataModification.
class ManipulatorContext final : public Data::ManipulatorContextBase
{
public:
    ManipulatorContext(const ManipulatorContext&) = delete;
    ManipulatorContext& operator=(const ManipulatorContext&) = delete;
    ~ManipulatorContext() override;

    HistoryScratch& scratch() { return *m_scratch; }
    // The edit has failed: its end reverses what it did and delivers nothing.
    void setRollback() { m_rollback = true; }
    bool isRollback() const { return m_rollback; }
    // An undo or a redo: what is settled once comes back, and listeners must not edit on top of it.
    void setReplay() { m_isReplay = true; }
    bool isReplay() const { return m_isReplay; }
    // For history items: `object` has left the tree for good, so its listeners go with the context.
    void settleObject(Data::BaseObject& object) { takeOut(object); }

private:
    friend class CommandHistory;
    friend class ManipulatorBase;

    explicit ManipulatorContext(std::shared_ptr<HistoryScratch> scratch);
    // Delivers and settles, or rolls back. Passes on what a listener throws. The destructor does
    // the same for a context that was not closed, except that an exception ends the program.
    void close();

    std::shared_ptr<HistoryScratch> m_scratch;
    bool m_rollback = false;
    bool m_isReplay = false;
    bool m_isClosed = false;
};

} // namespace Orv::Core
