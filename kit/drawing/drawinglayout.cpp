#include "drawing/drawinglayout.h"

#include "drawing/drawinglayers.h"
#include "drawing/layoutmodule.h"
#include "drawing/textwidth.h"
#include <QStringList>
#include <algorithm>
#include <cmath>
#include <numeric>

namespace Ksx::Kit {

namespace {

using namespace BoxMeasure;

constexpr double MinimumWidth = 84;
constexpr double MaximumWidth = 150;
constexpr double Margin = 24;  // around the picture
constexpr double WireGap = 36; // between boxes beside each other
constexpr double BoxGap = 14;  // between boxes below each other
constexpr double NoteGap = 6;  // between a note and the box below it
constexpr double SameRow = 32; // boxes of stored places that are less apart are beside each other
constexpr double MinimumApart = 8;     // stored places that are less apart are taken for one place
constexpr std::size_t Neighbours = 64; // that are compared with a box
constexpr int MaximumLines = 12;
constexpr double Far = 1e12; // beyond all places

// Sets the size of a box by its texts, and cuts these to it.
void fit(Box& box)
{
    double width =
        std::max(textWidth(box.title, TitleSize, true), textWidth(detailLine(box), DetailSize));
    const std::size_t rows = std::max(box.inputs.size(), box.outputs.size());
    for (std::size_t i = 0; i < rows; ++i) {
        const QString input = i < box.inputs.size() ? box.inputs[i].name : QString();
        const QString output = i < box.outputs.size() ? box.outputs[i].name : QString();
        width = std::max(width, textWidth(input, ConnectorSize) + textWidth(output, ConnectorSize) +
                                    (input.isEmpty() || output.isEmpty() ? 0 : Padding));
    }
    box.width = std::ceil(std::clamp(width + 2 * Padding, MinimumWidth, MaximumWidth));
    box.height = Header + Row * static_cast<double>(rows) + (rows == 0 ? 0 : Bottom);
}

// Returns the text in lines of a bounded width.
QStringList wrappedLines(const QString& text)
{
    QStringList lines;
    for (const QString& paragraph : text.split(QChar('\n'))) {
        QString line;
        for (const QString& word : paragraph.split(QChar(' '))) {
            const QString longer = line.isEmpty() ? word : line + QChar(' ') + word;
            if (textWidth(longer, NoteSize) <= MaximumNote || line.isEmpty()) {
                line = longer;
                continue;
            }
            lines.append(fittingText(line, MaximumNote, NoteSize));
            line = word;
        }
        lines.append(fittingText(line, MaximumNote, NoteSize));
    }
    if (lines.size() > MaximumLines) {
        lines.erase(lines.begin() + MaximumLines - 1, lines.end());
        lines.append(QString(QChar(0x2026)));
    }
    return lines;
}

void fit(Note& note)
{
    const QStringList lines = wrappedLines(note.text);
    double width = 0;
    for (const QString& line : lines)
        width = std::max(width, textWidth(line, NoteSize));
    note.text = lines.join(QChar('\n'));
    note.width = std::ceil(width + 2 * NoteMargin);
    note.height = NoteLine * static_cast<double>(lines.size()) + 2 * NoteMargin;
}

bool isComplete(const StoredPlaces& places)
{
    return std::count(places.boxes.begin(), places.boxes.end(), std::nullopt) <= 1;
}

// How much further apart boxes have to be than the stored places, so that none covers another.
class Stretch
{
public:
    Stretch(const std::vector<Box>& boxes, const std::vector<QPointF>& places)
        : m_boxes(boxes), m_places(places), m_order(boxes.size())
    {
        std::iota(m_order.begin(), m_order.end(), 0);
        std::sort(m_order.begin(), m_order.end(), [&](std::size_t a, std::size_t b) {
            return std::make_tuple(places[a].y(), places[a].x(), a) <
                   std::make_tuple(places[b].y(), places[b].x(), b);
        });
        visitPairs([this](double dx, double dy, double width, double) {
            if (dy < SameRow && dx >= MinimumApart)
                m_x = std::max(m_x, (width + WireGap) / dx);
        });
        m_x = std::min(m_x, MaximumX);
        visitPairs([this](double dx, double dy, double width, double height) {
            if (dx * m_x < width && dy >= MinimumApart)
                m_y = std::max(m_y, (height + BoxGap) / dy);
        });
        m_y = std::min(m_y, MaximumY);
    }

    QPointF at(const QPointF& place) const { return {place.x() * m_x, place.y() * m_y}; }

private:
    static constexpr double MaximumX = 2;
    static constexpr double MaximumY = 3;

    // Calls `visit` with how far boxes are apart and must be, for neighbours in the order.
    template <class Visit>
    void visitPairs(const Visit& visit) const
    {
        for (std::size_t i = 0; i < m_order.size(); ++i) {
            for (std::size_t j = i + 1; j < std::min(i + Neighbours, m_order.size()); ++j) {
                const Box& a = m_boxes[m_order[i]];
                const Box& b = m_boxes[m_order[j]];
                const QPointF apart = m_places[m_order[j]] - m_places[m_order[i]];
                visit(std::abs(apart.x()), apart.y(), (a.width + b.width) / 2,
                      (a.height + b.height) / 2);
            }
        }
    }

    const std::vector<Box>& m_boxes;
    const std::vector<QPointF>& m_places;
    std::vector<std::size_t> m_order; // from the top down
    double m_x = 1;
    double m_y = 1;
};

template <class Item>
void centre(Item& item, const QPointF& place)
{
    item.x = place.x() - item.width / 2;
    item.y = place.y() - item.height / 2;
}

bool isCovering(const Box& box, const Note& note)
{
    return box.x < note.x + note.width && note.x < box.x + box.width &&
           box.y < note.y + note.height && note.y < box.y + box.height;
}

// Moves a note up as long as a box covers it, which hides its text.
void moveAboveBoxes(Note& note, const std::vector<Box>& boxes)
{
    constexpr int MaximumMoves = 4;
    for (int i = 0; i < MaximumMoves; ++i) {
        const auto box = std::find_if(boxes.begin(), boxes.end(),
                                      [&](const Box& one) { return isCovering(one, note); });
        if (box == boxes.end())
            return;
        note.y = box->y - note.height - NoteGap;
    }
}

void useStored(Drawing& drawing, const StoredPlaces& stored)
{
    std::vector<QPointF> places;
    places.reserve(stored.boxes.size());
    for (const auto& place : stored.boxes)
        places.push_back(place.value_or(QPointF()));
    const Stretch stretch(drawing.boxes, places);
    for (std::size_t i = 0; i < places.size(); ++i)
        centre(drawing.boxes[i], stretch.at(places[i]));
    for (std::size_t i = 0; i < drawing.notes.size(); ++i) {
        centre(drawing.notes[i], stretch.at(stored.notes[i].value_or(QPointF())));
        moveAboveBoxes(drawing.notes[i], drawing.boxes);
    }
}

// The bounds of a graph that the library gets. Its time and memory grow faster than the graph.
constexpr std::size_t MaximumLibraryBoxes = 1000;
constexpr std::size_t MaximumCrossings = 3000;

// Returns false where the graph is too large for the library, or the library is missing.
bool layOutByLibrary(Drawing& drawing)
{
    std::vector<Box>& boxes = drawing.boxes;
    if (boxes.size() > MaximumLibraryBoxes || DrawingLayers(drawing).crossings() > MaximumCrossings)
        return false;
    const LayoutFunction run = layoutFunction();
    if (run == nullptr)
        return false;
    std::vector<LayoutBox> places;
    places.reserve(boxes.size());
    for (const Box& box : boxes)
        places.push_back({box.width, box.height});
    std::vector<LayoutWire> wires;
    for (const Wire& wire : drawing.wires)
        if (wire.from != wire.to)
            wires.push_back({wire.from, wire.to});
    if (!run(places.data(), places.size(), wires.data(), wires.size()))
        return false;
    for (std::size_t i = 0; i < boxes.size(); ++i)
        centre(boxes[i], {places[i].x, places[i].y});
    return true;
}

// Puts the notes below all boxes, beside each other.
void placeNotesBelow(Drawing& drawing)
{
    double left = Far;
    double right = -Far;
    double bottom = -Far;
    for (const Box& box : drawing.boxes) {
        left = std::min(left, box.x);
        right = std::max(right, box.x + box.width);
        bottom = std::max(bottom, box.y + box.height);
    }
    double x = left;
    double y = bottom + 2 * BoxGap;
    double lineHeight = 0;
    for (Note& note : drawing.notes) {
        if (x > left && x + note.width > right) {
            x = left;
            y += lineHeight + BoxGap;
            lineHeight = 0;
        }
        note.x = x;
        note.y = y;
        x += note.width + BoxGap;
        lineHeight = std::max(lineHeight, note.height);
    }
}

// Moves everything so that the picture begins at 0, and sets its size.
void moveToOrigin(Drawing& drawing)
{
    if (drawing.boxes.empty() && drawing.notes.empty())
        return;
    QPointF low(Far, Far);
    QPointF high(-Far, -Far);
    const auto visitAll = [&](const auto& visit) {
        std::for_each(drawing.boxes.begin(), drawing.boxes.end(), visit);
        std::for_each(drawing.notes.begin(), drawing.notes.end(), visit);
    };
    visitAll([&](const auto& item) {
        low = {std::min(low.x(), item.x), std::min(low.y(), item.y)};
        high = {std::max(high.x(), item.x + item.width), std::max(high.y(), item.y + item.height)};
    });
    visitAll([&](auto& item) {
        item.x += Margin - low.x();
        item.y += Margin - low.y();
    });
    drawing.width = high.x() - low.x() + 2 * Margin;
    drawing.height = high.y() - low.y() + 2 * Margin;
}

} // namespace

void layOut(Drawing& drawing, const StoredPlaces& places)
{
    for (Box& box : drawing.boxes)
        fit(box);
    for (Note& note : drawing.notes)
        fit(note);
    if (isComplete(places)) {
        drawing.way = LayoutWay::Stored;
        useStored(drawing, places);
    } else {
        const bool isComputed = layOutByLibrary(drawing);
        drawing.way = isComputed ? LayoutWay::Computed : LayoutWay::Columns;
        if (!isComputed)
            layOutInColumns(drawing);
        placeNotesBelow(drawing);
    }
    moveToOrigin(drawing);
    addDetours(drawing);
}

QString detailLine(const Box& box)
{
    return box.detail + QLatin1String(box.isResult ? ", result" : "") +
           QLatin1String(box.isDisabled ? ", off" : "");
}

QPointF inputPlace(const Box& box, std::size_t index)
{
    return {box.x, box.y + Header + Row * (static_cast<double>(index) + 0.5)};
}

QPointF outputPlace(const Box& box, std::size_t index)
{
    return {box.x + box.width, box.y + Header + Row * (static_cast<double>(index) + 0.5)};
}

} // namespace Ksx::Kit
