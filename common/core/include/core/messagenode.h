// The tree of messages in which reading and updating report their work.
#pragma once

#include <QString>
#include <memory>
#include <vector>

namespace Orv::Core {

// The weight of a message. The numbers do not change.
enum class MessageLevel
{
    // Something was done.
    Information = 0,
    // Something failed.
    Error = 3,
};

// A message with messages below it. A node owns its children. A log that is a null pointer takes no
// messages. Not locked: one thread at a time.
class MessageNode
{
public:
    // Makes a root. A log mostly begins with a root without text.
    explicit MessageNode(const QString& text = {}, MessageLevel level = MessageLevel::Information);
    MessageNode(const MessageNode&) = delete;
    MessageNode& operator=(const MessageNode&) = delete;
    ~MessageNode();

    // Returns the text for users.
    const QString& text() const { return m_text; }
    // Returns the weight of this message alone. See hasError().
    MessageLevel level() const { return m_level; }
    // Returns the node that owns this one. Returns null for a root.
    const MessageNode* parent() const { return m_parent; }
    // Returns the messages below this one, in the order in which they came.
    const std::vector<std::unique_ptr<MessageNode>>& children() const { return m_children; }

    // Adds a new last child and returns it. This node owns it.
    MessageNode& add(MessageLevel level, const QString& text);
    // Takes a child off this node and returns it. `child` must be a child of this node.
    std::unique_ptr<MessageNode> detach(MessageNode& child);
    // Takes a node off its parent and makes it the last child here. The node must have a parent.
    void attach(MessageNode& node);
    // Makes a root the last child here.
    void attach(std::unique_ptr<MessageNode> node);

    // Returns true if this node or one below it is an error.
    bool hasError() const;

    // Returns one line per node, with two blanks of indent per level of the tree. Errors begin with
    // "Error: ". The text of the root is left out if it is empty.
    QString toText() const;

private:
    QString m_text;
    MessageLevel m_level;
    MessageNode* m_parent = nullptr;
    std::vector<std::unique_ptr<MessageNode>> m_children;
};

// Adds a message below `log`. Does nothing for null.
void addMessage(MessageNode* log, MessageLevel level, const QString& text);

} // namespace Orv::Core
