// Leads wires around boxes of their row.
#include "drawing/drawinglayout.h"
#include <algorithm>
#include <cmath>

namespace Ksx::Kit {

namespace {

constexpr std::size_t MaximumComparisons = 4000000;
constexpr double LevelWires = 40; // wires that rise or fall more are seen to pass behind boxes
constexpr double Distance = 5;    // from the boxes
constexpr double Step = 3;        // between wires beside each other
constexpr std::size_t Steps = 3;

// The upper and the lower end of boxes that a wire would pass behind.
struct Obstacle
{
    double top;
    double bottom;
};

std::optional<Obstacle> obstacleOf(const Drawing& drawing, const QPointF& begin, const QPointF& end)
{
    const double high = std::min(begin.y(), end.y());
    const double low = std::max(begin.y(), end.y());
    std::optional<Obstacle> obstacle;
    for (const Box& box : drawing.boxes) {
        const bool isBetween = box.x > begin.x() && box.x + box.width < end.x();
        const bool isInTheWay = box.y < low + Distance && high - Distance < box.y + box.height;
        if (!isBetween || !isInTheWay)
            continue;
        const Obstacle one{box.y, box.y + box.height};
        obstacle = obstacle ? Obstacle{std::min(obstacle->top, one.top),
                                       std::max(obstacle->bottom, one.bottom)}
                            : one;
    }
    return obstacle;
}

} // namespace

void addDetours(Drawing& drawing)
{
    if (drawing.boxes.size() * drawing.wires.size() > MaximumComparisons)
        return;
    std::size_t count = 0;
    for (Wire& wire : drawing.wires) {
        const QPointF begin = outputPlace(drawing.boxes[wire.from], wire.output);
        const QPointF end = inputPlace(drawing.boxes[wire.to], wire.input);
        if (std::abs(begin.y() - end.y()) > LevelWires)
            continue;
        const auto obstacle = obstacleOf(drawing, begin, end);
        if (!obstacle)
            continue;
        const double distance = Distance + Step * static_cast<double>(count++ % Steps);
        const double above = std::min(begin.y(), end.y()) - obstacle->top;
        const double below = obstacle->bottom - std::max(begin.y(), end.y());
        wire.detour = above < below ? obstacle->top - distance : obstacle->bottom + distance;
    }
}

} // namespace Ksx::Kit
