// A node with a place on the canvas.
#pragma once

#include "ksx/core/follow.h"
#include "ksx/core/nodecontroller.h"

namespace Ksx::Data::Content {
class GUILayout;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class BaseNodeController : public NodeController
{
public:
    explicit BaseNodeController(GraphController& graph);
    ~BaseNodeController() override;

    // Zero for a node that has died. Each change is a command, also one to the present value; one
    // to a place beyond all floats is refused. The signals tell of all changes of the document, by
    // whatever edit, undo or redo.
    QPointF position() const override;
    void setPosition(const QPointF& position) override;
    float depth() const override;
    void setDepth(float depth) override;

protected:
    // Builds the connectors, and tells of changes of the node from now on. For the constructors of
    // leaf classes.
    void begin(const Orv::Data::BaseObject& node);
    // Null once the node has died.
    virtual const Data::Content::GUILayout* layout() const = 0;

private:
    void onNode(const Orv::Data::DataMessage& message);

    Follow<&BaseNodeController::onNode, Orv::Data::ChangeType::Descendant, Stage::Display>
        m_nodeWatch{*this};
    QPointF m_toldPosition;
    float m_toldDepth = 0.0F;
};

} // namespace Ksx::Core
