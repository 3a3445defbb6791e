// Pictures of graphs: boxes and wires as plain structures, and their form as SVG.
#pragma once

#include <QByteArray>
#include <QString>
#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace Ksx::Data::Content {
class DynamicValue;
class Function;
class Graph;
class Package;
class ParamsGraph;
} // namespace Ksx::Data::Content

namespace Ksx::Kit {

class ContentIndex;

// The bounds of a drawing. A hostile package has more of each, and a picture of that is of no use.
constexpr std::size_t MaximumBoxes = 20000;
constexpr std::size_t MaximumWires = 100000;
// Of the inputs of a box, and of its outputs.
constexpr std::size_t MaximumConnectors = 100;

// The difference that a picture shows at a box or a wire, by a coloured outline and a sign.
enum class Mark
{
    None,
    Added,
    Removed,
    Changed,
    Moved,
};

// The kind of a node.
enum class BoxKind
{
    Filter,
    // A graph or a function inside of another one.
    Instance,
    Input,
    Output,
    // A node of a function that computes a value out of others.
    Operation,
    // A node of a function that reads or sets a variable.
    Variable,
    Constant,
    Other,
};

struct Connector
{
    // May be empty for an output.
    QString name;
    // A ValueType, with several bits where it may be one of them. 0 where it is not known.
    unsigned type = 0;
};

// A node of a graph.
struct Box
{
    unsigned uid = 0;
    BoxKind kind = BoxKind::Other;
    // The name that a user gave to the node, or else that of its filter, graph or function.
    QString title;
    // A few words on the node.
    QString detail;
    // The path to the graph or function of an instance: "pkg://...". Empty for all others.
    QString target;
    // Whether the path leads into the package itself.
    bool isOwnTarget = false;
    // The address that the box links to. Empty without one. Whoever shows the picture sets it.
    QString link;
    std::vector<Connector> inputs;
    std::vector<Connector> outputs;
    bool isDisabled = false;
    // Whether the value of a function is that of this node.
    bool isResult = false;
    Mark mark = Mark::None;
    // The upper left corner and the size.
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

// A connection. The places are indexes: of a box, and of a connector of that box.
struct Wire
{
    std::size_t from = 0;
    std::size_t output = 0;
    std::size_t to = 0;
    std::size_t input = 0;
    Mark mark = Mark::None;
    // The height at which the wire runs around boxes of its row. None where it has a free way.
    std::optional<double> detour = std::nullopt;
};

// A comment or a frame.
struct Note
{
    unsigned uid = 0;
    // A few lines.
    QString text;
    bool isFrame = false;
    Mark mark = Mark::None;
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

// The way in which the boxes got their places.
enum class LayoutWay
{
    // The package has the places.
    Stored,
    // By the library for layouts.
    Computed,
    // In plain columns: the graph is too large for that library, or the library is missing.
    Columns,
};

// Returns the word for a way: "stored", "computed" or "columns".
QString wordOf(LayoutWay way);

// The picture of a graph. Coordinates go to the right and down, and begin at 0.
struct Drawing
{
    // The line above the graph.
    QString caption;
    // In the order of the nodes in the file.
    std::vector<Box> boxes;
    // In the order of the nodes that are fed. Connections from nothing are left out.
    std::vector<Wire> wires;
    std::vector<Note> notes;
    LayoutWay way = LayoutWay::Stored;
    double width = 0;
    double height = 0;
    // The number of nodes, connections and connectors beyond the bounds.
    std::size_t leftOut = 0;
};

// Makes drawings of the graphs and functions of a package, which must outlive it and not change.
// Several threads may draw with one of these at a time.
class GraphDrawer
{
public:
    explicit GraphDrawer(const Data::Content::Package& package);
    GraphDrawer(const GraphDrawer&) = delete;
    GraphDrawer& operator=(const GraphDrawer&) = delete;
    ~GraphDrawer();

    // Draws a graph of images. The caption is empty.
    Drawing draw(const Data::Content::Graph& graph) const;
    // Draws the body of a function. There is no box in it if the value is a constant.
    Drawing draw(const Data::Content::Function& function) const;
    // Draws the function of a parameter.
    Drawing draw(const Data::Content::DynamicValue& body) const;
    // Draws the graph that an FX-map holds.
    Drawing draw(const Data::Content::ParamsGraph& graph) const;

private:
    std::unique_ptr<const ContentIndex> m_index;
    // Of the dependencies by which the package names itself.
    std::set<unsigned> m_ownUids;
};

// Where a picture goes.
enum class SvgForm
{
    // A file, with its colours in it. They follow the scheme of the reader, light or dark.
    File,
    // A file for programs that know one scheme alone: light.
    LightFile,
    // A part of a page, which has svgStyle() once.
    Part,
};

// Returns the rules for the colours of pictures, light and dark, as a style sheet.
QByteArray svgStyle();

// Writes drawings beside each other, each under its caption, and a legend of all below them. The
// same drawings always give the same bytes, whatever fonts there are.
QByteArray svgOf(const std::vector<Drawing>& drawings, SvgForm form = SvgForm::File);
QByteArray svgOf(const Drawing& drawing, SvgForm form = SvgForm::File);

// Paints the same picture in light colours as PNG. A large one is made smaller. The letters are of
// the fonts of the machine. Returns no bytes on failure, with a sentence in `reason`.
QByteArray pngOf(const std::vector<Drawing>& drawings, QString& reason);

} // namespace Ksx::Kit
