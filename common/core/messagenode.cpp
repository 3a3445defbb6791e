#include "core/messagenode.h"

#include <algorithm>
#include <utility>

namespace Orv::Core {

namespace {

void appendLines(QString& out, const MessageNode& node, int depth)
{
    if (depth >= 0 && !(depth == 0 && node.parent() == nullptr && node.text().isEmpty())) {
        out += QString(depth * 2, ' ');
        if (node.level() == MessageLevel::Error)
            out += QStringLiteral("Error: ");
        out += node.text() + '\n';
        ++depth;
    }
    for (const auto& child : node.children())
        appendLines(out, *child, depth);
}

} // namespace

MessageNode::MessageNode(const QString& text, MessageLevel level) : m_text(text), m_level(level) {}

MessageNode::~MessageNode() = default;

MessageNode& MessageNode::add(MessageLevel level, const QString& text)
{
    attach(std::make_unique<MessageNode>(text, level));
    return *m_children.back();
}

std::unique_ptr<MessageNode> MessageNode::detach(MessageNode& child)
{
    const auto place = std::find_if(m_children.begin(), m_children.end(),
                                    [&](const auto& one) { return one.get() == &child; });
    Q_ASSERT(place != m_children.end());
    auto detached = std::move(*place);
    m_children.erase(place);
    detached->m_parent = nullptr;
    return detached;
}

void MessageNode::attach(MessageNode& node)
{
    Q_ASSERT(node.m_parent != nullptr);
    attach(node.m_parent->detach(node));
}

void MessageNode::attach(std::unique_ptr<MessageNode> node)
{
    node->m_parent = this;
    m_children.push_back(std::move(node));
}

bool MessageNode::hasError() const
{
    return m_level == MessageLevel::Error ||
           std::any_of(m_children.begin(), m_children.end(),
                       [](const auto& child) { return child->hasError(); });
}

QString MessageNode::toText() const
{
    QString text;
    appendLines(text, *this, 0);
    return text;
}

void addMessage(MessageNode* log, MessageLevel level, const QString& text)
{
    if (log != nullptr)
        log->add(level, text);
}

} // namespace Orv::Core
