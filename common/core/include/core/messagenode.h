// The tree of messages in which reading and updating report what they did.
#pragma once

#include <QString>
#include <memory>
#include <vector>

namespace Orv::Core {

enum class MessageLevel
{
    Information = 0,
    Error = 3,
};

// A node owns its children. Wherever a log is taken as a pointer, null means that nobody listens.
class MessageNode
{
public:
    explicit MessageNode(const QString& text = {}, MessageLevel level = MessageLevel::Information);
    MessageNode(const MessageNode&) = delete;
    MessageNode& operator=(const MessageNode&) = delete;
    ~MessageNode();

    const QString& text() const { return m_text; }
    MessageLevel level() const { return m_level; }
    const MessageNode* parent() const { return m_parent; }
    const std::vector<std::unique_ptr<MessageNode>>& children() const { return m_children; }

    // A new last child, owned by this node.
    MessageNode& add(MessageLevel level, const QString& text);
    // Takes the node off this one, whose child it must be.
    std::unique_ptr<MessageNode> detach(MessageNode& child);
    // Makes `node` the last child here, taken off its former parent. A node without a parent must
    // be given as an owner, in the other form.
    void attach(MessageNode& node);
    void attach(std::unique_ptr<MessageNode> node);

    // True if this node or one below it is an error.
    bool hasError() const;
    // One line per node, two blanks of indent per level of the tree; errors begin "Error: ". The
    // root's own text is left out when it is empty.
    QString toText() const;

private:
    QString m_text;
    MessageLevel m_level;
    MessageNode* m_parent = nullptr;
    std::vector<std::unique_ptr<MessageNode>> m_children;
};

// Adds a message below `log`, if there is one.
void addMessage(MessageNode* log, MessageLevel level, const QString& text);

} // namespace Orv::Core
