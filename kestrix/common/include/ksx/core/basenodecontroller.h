// A node with a place on the canvas.
#pragma once

#include "ksx/core/nodecontroller.h"

namespace Ksx::Data::Content {
class GUILayout;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class BaseNodeController : public NodeController
{
public:
    using NodeController::NodeController;

    // Zero for a node that has died. Each change is a command, also one to the present value; one
    // to a place beyond all floats is refused.
    QPointF position() const override;
    void setPosition(const QPointF& position) override;
    float depth() const override;
    void setDepth(float depth) override;

protected:
    // Null once the node has died.
    virtual const Data::Content::GUILayout* layout() const = 0;
};

} // namespace Ksx::Core
