// A plain layout for graphs that are too large for the library of layouts.
#include "drawing/drawinglayout.h"
#include <algorithm>
#include <cmath>
#include <deque>
#include <limits>
#include <numeric>

namespace Ksx::Kit {

namespace {

constexpr double ColumnGap = 60;
constexpr double RowGap = 16;
constexpr double MinimumColumn = 12; // boxes that a column may always have

using Numbers = std::vector<std::size_t>;

// Layers of boxes: each wire goes to a later one, but for a wire that closes a cycle.
class Layers
{
public:
    explicit Layers(const Drawing& drawing)
        : m_feeders(drawing.boxes.size()), m_users(drawing.boxes.size()),
          m_layers(drawing.boxes.size())
    {
        for (const Wire& wire : drawing.wires) {
            m_feeders[wire.to].push_back(wire.from);
            m_users[wire.from].push_back(wire.to);
        }
        assign();
        pullSources();
    }

    bool isAlone(std::size_t box) const { return m_feeders[box].empty() && m_users[box].empty(); }
    const Numbers& feeders(std::size_t box) const { return m_feeders[box]; }
    std::size_t of(std::size_t box) const { return m_layers[box]; }

private:
    // Takes the boxes whose feeders are all done, and the first of the others where there are none.
    void assign()
    {
        Numbers open(m_feeders.size());
        std::deque<std::size_t> ready;
        std::vector<bool> isTaken(m_feeders.size());
        for (std::size_t box = 0; box < open.size(); ++box) {
            open[box] = m_feeders[box].size();
            if (open[box] == 0)
                ready.push_back(box);
        }
        for (std::size_t next = 0; next < open.size() || !ready.empty();) {
            if (ready.empty()) {
                ready.push_back(next++);
                continue;
            }
            const std::size_t box = ready.front();
            ready.pop_front();
            if (isTaken[box])
                continue;
            isTaken[box] = true;
            for (const std::size_t user : m_users[box]) {
                if (isTaken[user])
                    continue;
                m_layers[user] = std::max(m_layers[user], m_layers[box] + 1);
                if (--open[user] == 0)
                    ready.push_back(user);
            }
        }
    }

    // Moves boxes that nothing feeds to the layer in front of their first user.
    void pullSources()
    {
        for (std::size_t box = 0; box < m_layers.size(); ++box) {
            if (!m_feeders[box].empty() || m_users[box].empty())
                continue;
            std::size_t first = std::numeric_limits<std::size_t>::max();
            for (const std::size_t user : m_users[box])
                first = std::min(first, m_layers[user]);
            m_layers[box] = first == 0 ? 0 : first - 1;
        }
    }

    std::vector<Numbers> m_feeders;
    std::vector<Numbers> m_users;
    Numbers m_layers;
};

// Sorts a layer by the mean of the places that the feeders of each box have in their own layers.
void sortByFeeders(Numbers& layer, const Layers& layers, std::vector<double>& places)
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
    const Layers layers(drawing);
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
