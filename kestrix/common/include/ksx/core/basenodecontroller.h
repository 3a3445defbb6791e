// The base of the controllers of all nodes that the document gives a place on the canvas.
#pragma once

#include "ksx/core/follow.h"
#include "ksx/core/nodecontroller.h"

namespace Ksx::Data::Content {
class GUILayout;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Reads and writes the place of a node, and sends the signals of NodeController for it. The signals
// are sent for all changes of the document, by whatever edit, undo or redo. For life and thread see
// NodeController.
class BaseNodeController : public NodeController
{
public:
    // For the kinds of nodes. The graph must outlive the controller.
    explicit BaseNodeController(GraphController& graph);
    ~BaseNodeController() override;

    // Returns zero once the node has died. The document holds 32-bit floats: a position that was
    // written in double precision reads back narrowed.
    QPointF position() const override;

    // Moves the node by one undoable command, also if it is there already. Changes nothing once the
    // node has died, and for a coordinate that is no finite float.
    void setPosition(const QPointF& position) override;
    // Returns zero once the node has died.
    float depth() const override;

    // Changes the depth by one undoable command, also to the present value. Changes nothing once
    // the node has died, and for a depth that is not finite.
    void setDepth(float depth) override;

protected:
    // For the constructors of leaf classes: builds the connectors and follows the node from now on.
    void begin(const Orv::Data::BaseObject& node);
    // Returns the place in the document. Returns null once the node has died.
    virtual const Data::Content::GUILayout* layout() const = 0;

private:
    void onNode(const Orv::Data::DataMessage& message);

    Follow<&BaseNodeController::onNode, Orv::Data::ChangeType::Descendant, Stage::Display>
        m_nodeWatch{*this};
    QPointF m_toldPosition;
    float m_toldDepth = 0.0F;
};

} // namespace Ksx::Core
