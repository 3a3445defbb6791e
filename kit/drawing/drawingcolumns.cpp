// A plain layout for graphs that are too large for the library of layouts.
#include "drawing/drawinglayers.h"
#include "drawing/drawinglayout.h"
#include <algorithm>
#include <cmath>

namespace Ksx::Kit {

namespace {

constexpr double ColumnGap = 60;
constexpr double RowGap = 16;
constexpr double MinimumColumn = 12; // boxes that a column may always have

// Sorts a layer by the mean of the places that the feeders of each box have in their own layers.
void sortByFeeders(Numbers& layer, const DrawingLayers& layers, std::vector<double>& places)
{
    std::vector<std::pair<double, std::size_t>> keys;
    for (const std::size_t box : layer) {
        double sum = 0;
        for (const std::size_t feeder : layers.feeders(box))
            sum += places[feeder];
        const auto count = static_cast<double>(layers.feeders(box).size());
        keys.emplace_back(count == 0 ? places[box] : sum / count, box);
    }
    std::sort(keys.begin(), keys.end());
    for (std::size_t i = 0; i < layer.size(); ++i) {
        layer[i] = keys[i].second;
        places[layer[i]] = (static_cast<double>(i) + 0.5) / static_cast<double>(layer.size());
    }
}

// Puts boxes below each other, and returns the width of the column.
double placeColumn(std::vector<Box>& boxes, const std::size_t* begin, const std::size_t* end,
                   double x, double top)
{
    double width = 0;
    for (const std::size_t* box = begin; box != end; ++box)
        width = std::max(width, boxes[*box].width);
    for (const std::size_t* box = begin; box != end; ++box) {
        boxes[*box].x = x + (width - boxes[*box].width) / 2;
        boxes[*box].y = top;
        top += boxes[*box].height + RowGap;
    }
    return width;
}

// Puts boxes into columns of a bounded length, and returns the right end of them.
double placeLayer(std::vector<Box>& boxes, const Numbers& layer, std::size_t longest, double x,
                  bool isCentred)
{
    for (std::size_t begin = 0; begin < layer.size(); begin += longest) {
        const std::size_t end = std::min(begin + longest, layer.size());
        double height = 0;
        for (std::size_t i = begin; i < end; ++i)
            height += boxes[layer[i]].height + RowGap;
        x += placeColumn(boxes, layer.data() + begin, layer.data() + end, x,
                         isCentred ? -height / 2 : 0) +
             ColumnGap;
    }
    return x;
}

std::size_t longestColumn(std::size_t boxes)
{
    return static_cast<std::size_t>(
        std::max(MinimumColumn, 2 * std::ceil(std::sqrt(static_cast<double>(boxes)))));
}

} // namespace

void layOutInColumns(Drawing& drawing)
{
    std::vector<Box>& boxes = drawing.boxes;
    const DrawingLayers layers(drawing);
    std::vector<Numbers> columns;
    Numbers alone;
    for (std::size_t box = 0; box < boxes.size(); ++box) {
        if (layers.isAlone(box)) {
            alone.push_back(box);
            continue;
        }
        columns.resize(std::max(columns.size(), layers.of(box) + 1));
        columns[layers.of(box)].push_back(box);
    }
    std::vector<double> places(boxes.size());
    for (std::size_t box = 0; box < boxes.size(); ++box)
        places[box] = static_cast<double>(box) / static_cast<double>(boxes.size());
    double x = 0;
    for (Numbers& layer : columns) {
        sortByFeeders(layer, layers, places);
        x = placeLayer(boxes, layer, longestColumn(boxes.size()), x, true);
    }
    double bottom = 0;
    for (const Numbers& layer : columns)
        for (const std::size_t box : layer)
            bottom = std::max(bottom, boxes[box].y + boxes[box].height);
    // Boxes without wires come below the others, in a block.
    placeLayer(boxes, alone, std::max<std::size_t>(4, longestColumn(alone.size()) / 3), 0, false);
    for (const std::size_t box : alone)
        boxes[box].y += columns.empty() ? 0 : bottom + 2 * RowGap;
}

} // namespace Ksx::Kit
