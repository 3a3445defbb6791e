// What the command manager runs.
#pragma once

#include <QString>
#include <memory>

namespace Orv::Core {

class ICommand
{
public:
    virtual ~ICommand() = default;
    // False if the command failed and left everything as it was.
    virtual bool execute() = 0;
    virtual QString getName() const = 0;
};

class IUndoableCommand : public ICommand
{
public:
    // False if the tree is not in the state that the command left.
    virtual bool undo() = 0;
    virtual bool redo() = 0;
    // Could `other`, which was run right after this one, be undone together with it?
    virtual bool canMerge(const std::shared_ptr<ICommand>& other) const = 0;
    // Takes over what `other` has to undo; false if the two cannot be merged.
    virtual bool merge(const std::shared_ptr<ICommand>& other) = 0;
};

class UndoableCommand : public IUndoableCommand
{};

// Names a group of commands that belong together for a user.
class ICommandGroup
{
public:
    virtual ~ICommandGroup() = default;
    virtual QString getName() const = 0;
};

class UndoableCommandGroup final : public ICommandGroup
{
public:
    explicit UndoableCommandGroup(const QString& name) : m_name(name) {}
    QString getName() const override { return m_name; }

private:
    QString m_name;
};

class NotUndoableCommandGroup final : public ICommandGroup
{
public:
    QString getName() const override { return {}; }
};

// Shows the manager's listeners where a group begins; does nothing by itself.
class BeginGroupCommand final : public ICommand
{
public:
    explicit BeginGroupCommand(std::shared_ptr<ICommandGroup> group) : m_group(std::move(group)) {}
    bool execute() override { return true; }
    // "BeginGroupCommand", and the name of the group, if there is one, in parentheses.
    QString getName() const override;
    const std::shared_ptr<ICommandGroup>& group() const { return m_group; }

private:
    std::shared_ptr<ICommandGroup> m_group;
};

// The same for its end.
class EndGroupCommand final : public ICommand
{
public:
    bool execute() override { return true; }
    QString getName() const override { return QStringLiteral("EndGroupCommand"); }
};

} // namespace Orv::Core
