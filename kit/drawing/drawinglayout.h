// Gives the boxes of a drawing their sizes and places.
#pragma once

#include "ksx/kit/drawing.h"
#include <QPointF>
#include <optional>
#include <vector>

namespace Ksx::Kit {

// The measures of a box.
namespace BoxMeasure {
constexpr double Header = 34;    // the title and the line below it
constexpr double Row = 16;       // a connector
constexpr double Bottom = 6;     // below the last connector
constexpr double TitleSize = 12; // of the fonts
constexpr double DetailSize = 9.5;
constexpr double ConnectorSize = 10;
constexpr double NoteSize = 11;
constexpr double NoteLine = 15;
constexpr double NoteMargin = 8;
constexpr double Padding = 10;      // between the border and a text
constexpr double MaximumNote = 260; // the width
} // namespace BoxMeasure

// The places that a package has, of the middle of each box and note. None where it has no place.
struct StoredPlaces
{
    std::vector<std::optional<QPointF>> boxes;
    std::vector<std::optional<QPointF>> notes;
};

// Sets the sizes of the boxes and notes by their texts, and their places. The stored places are used
// where each box but one has one: the reader leaves out that of a node at the origin.
void layOut(Drawing& drawing, const StoredPlaces& places);

// Returns the line below the title: the detail, and the state of the node.
QString detailLine(const Box& box);

// Returns the place of a connector on the border of its box.
QPointF inputPlace(const Box& box, std::size_t index);
QPointF outputPlace(const Box& box, std::size_t index);

// Leads wires around boxes of their row, behind which they would seem to end. Only in drawings of a
// bounded size, since each wire is compared with each box.
void addDetours(Drawing& drawing);

// Gives the boxes places in columns, so that wires go to the right. Takes a time that is linear in
// boxes and wires, but for sorting.
void layOutInColumns(Drawing& drawing);

} // namespace Ksx::Kit
