// A process with a command manager, and what it has run.
#pragma once

#include "core/commandmanager.h"
#include "core/commandsignals.h"
#include "core/icommand.h"
#include "core/ilibraryservices.h"
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace TestSupport {

// While it lives, edits run on a command manager, and those that succeeded can be undone.
class UndoHistory
{
public:
    UndoHistory()
    {
        Orv::setLibraryServices(&m_services);
        m_services.manager->executed().connect(
            [this](const std::shared_ptr<Orv::Core::ICommand>& command) { keep(command); });
    }
    UndoHistory(const UndoHistory&) = delete;
    UndoHistory& operator=(const UndoHistory&) = delete;
    ~UndoHistory() { Orv::setLibraryServices(nullptr); }

    // All commands that were run with success, those that frame groups included.
    std::size_t size() const { return m_names.size(); }
    // Their history texts, in order.
    const std::vector<std::string>& names() const { return m_names; }
    // The last edit, undone or redone; false if that failed or there is none.
    bool undo() { return !m_commands.empty() && m_commands.back()->undo(); }
    bool redo() { return !m_commands.empty() && m_commands.back()->redo(); }
    // All edits, from the last to the first.
    bool undoAll()
    {
        bool isDone = true;
        for (auto command = m_commands.rbegin(); command != m_commands.rend(); ++command)
            isDone = (*command)->undo() && isDone;
        return isDone;
    }
    bool redoAll()
    {
        bool isDone = true;
        for (const auto& command : m_commands)
            isDone = command->redo() && isDone;
        return isDone;
    }

private:
    struct Services final : Orv::Core::ILibraryServices
    {
        using Manager = Orv::Core::CommandManager;
        void* reserved0() override { return nullptr; }
        const std::shared_ptr<Manager>* commandManagerHandle() override { return &manager; }
        const std::shared_ptr<Manager>& commandManager() override { return manager; }
        const std::shared_ptr<void>& spareHandle() override { return spare; }
        void* reserved4() override { return nullptr; }

        std::shared_ptr<Manager> manager = std::make_shared<Manager>(2);
        std::shared_ptr<void> spare;
    };

    void keep(const std::shared_ptr<Orv::Core::ICommand>& command)
    {
        m_names.push_back(command->getName().toStdString());
        if (auto undoable = std::dynamic_pointer_cast<Orv::Core::IUndoableCommand>(command))
            m_commands.push_back(std::move(undoable));
    }

    Services m_services;
    std::vector<std::string> m_names;
    std::vector<std::shared_ptr<Orv::Core::IUndoableCommand>> m_commands;
};

} // namespace TestSupport
