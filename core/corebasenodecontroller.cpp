#include "ksx/core/basenodecontroller.h"

#include "data/content/layoutmanipulators.h"
#include "ksx/core/constantvalue.h"
#include "ksx/core/edit.h"

namespace Ksx::Core {

namespace {

using Data::Content::GUILayout;
using Orv::Core::ManipulatorStruct;
using Orv::Data::DataPointerBox;
using Orv::Data::DataPointerBoxMasterKey;

// Refuses a place that no file can hold.
bool write(const ManipulatorStruct<GUILayout>& layout, const Orv::Data::Float3& place)
{
    if (!isStorable(place))
        return false;
    layout.gpos().set(place);
    return true;
}

bool applyPosition(ManipulatorStruct<GUILayout> layout, const DataPointerBoxMasterKey&,
                   const QPointF& position)
{
    Orv::Data::Float3 place = layout.get()->gpos().get();
    place[0] = static_cast<float>(position.x());
    place[1] = static_cast<float>(position.y());
    return write(layout, place);
}

bool applyDepth(ManipulatorStruct<GUILayout> layout, const DataPointerBoxMasterKey&, float depth)
{
    Orv::Data::Float3 place = layout.get()->gpos().get();
    place[2] = depth;
    return write(layout, place);
}

QString history(const char* key)
{
    return historyText("Ksx::Core::BaseNodeController", key);
}

} // namespace

QPointF BaseNodeController::position() const
{
    const GUILayout* place = layout();
    if (place == nullptr)
        return {};
    const Orv::Data::Float3& floats = place->gpos().get();
    return {static_cast<double>(floats[0]), static_cast<double>(floats[1])};
}

void BaseNodeController::setPosition(const QPointF& position)
{
    if (runEdit(DataPointerBox<GUILayout>(layout()), position, &applyPosition,
                history("MOVE_NODE_HISTORY_DESC")))
        positionChanged(this->position());
}

float BaseNodeController::depth() const
{
    const GUILayout* place = layout();
    return place == nullptr ? 0.0F : place->gpos().get()[2];
}

void BaseNodeController::setDepth(float depth)
{
    if (runEdit(DataPointerBox<GUILayout>(layout()), depth, &applyDepth,
                history("SET_DEPTH_NODE_HISTORY_DESC")))
        depthChanged(depth);
}

} // namespace Ksx::Core
