// The commands that a command manager runs.
#pragma once

#include <QString>
#include <memory>

namespace Orv::Core {

// Something that a user can do. CommandModification is the usual kind.
class ICommand
{
public:
    virtual ~ICommand() = default;
    // Runs the command. Returns false if it failed and left everything as it was.
    virtual bool execute() = 0;
    // Returns the text for users. May be empty.
    virtual QString getName() const = 0;
};

// A command that changes documents. A program that offers undo keeps these and calls undo() and
// redo().
class IUndoableCommand : public ICommand
{
public:
    // Reverses the command. Returns false and changes nothing if the tree is not in the state that
    // the command left.
    virtual bool undo() = 0;

    // Runs an undone command again. Returns false and changes nothing if the tree has changed since
    // then.
    virtual bool redo() = 0;
    // Returns whether `other`, which was run right after this one, can be undone together with it.
    virtual bool canMerge(const std::shared_ptr<ICommand>& other) const = 0;
    // Takes over the changes that `other` has to undo. Returns false if the two cannot be merged.
    virtual bool merge(const std::shared_ptr<ICommand>& other) = 0;
};

class UndoableCommand : public IUndoableCommand
{};

// Names a group of commands that belong together for a user.
class ICommandGroup
{
public:
    virtual ~ICommandGroup() = default;
    // Returns the text for users. May be empty.
    virtual QString getName() const = 0;
};

// A group that a user can undo as one.
class UndoableCommandGroup final : public ICommandGroup
{
public:
    explicit UndoableCommandGroup(const QString& name) : m_name(name) {}
    QString getName() const override { return m_name; }

private:
    QString m_name;
};

// A group that a user is not offered to undo.
class NotUndoableCommandGroup final : public ICommandGroup
{
public:
    QString getName() const override { return {}; }
};

// Shows the listeners of the manager where a group begins. Does nothing by itself.
class BeginGroupCommand final : public ICommand
{
public:
    explicit BeginGroupCommand(std::shared_ptr<ICommandGroup> group) : m_group(std::move(group)) {}
    bool execute() override { return true; }
    // Returns "BeginGroupCommand", and the name of the group, if it has one, in parentheses.
    QString getName() const override;
    // Returns the group. May be null.
    const std::shared_ptr<ICommandGroup>& group() const { return m_group; }

private:
    std::shared_ptr<ICommandGroup> m_group;
};

// Shows the listeners of the manager where a group ends: the one that was begun last.
class EndGroupCommand final : public ICommand
{
public:
    bool execute() override { return true; }
    QString getName() const override { return QStringLiteral("EndGroupCommand"); }
};

} // namespace Orv::Core
