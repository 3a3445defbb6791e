#include "ksx/kit/comparisonpictures.h"

#include "compare/packagecomparison.h"
#include "compare/version.h"
#include "contentplace.h"
#include "data/content/function.h"
#include "data/content/graph.h"
#include "data/content/package.h"
#include <map>
#include <utility>

namespace Ksx::Kit {

namespace {

namespace Doc = Data::Content;
using Orv::Data::BaseObject;

// The marks of the nodes and connections of a graph, in one of the packages.
struct Marks
{
    std::map<unsigned, Mark> nodes;
    std::map<std::pair<unsigned, QString>, Mark> wires; // by the node that is fed, and its input
};

Mark markOf(ChangeKind kind)
{
    switch (kind) {
    case ChangeKind::Added:
        return Mark::Added;
    case ChangeKind::Removed:
        return Mark::Removed;
    case ChangeKind::Moved:
        return Mark::Moved;
    default:
        return Mark::Changed;
    }
}

// Whether the difference is one of the node as such, and not of something in it.
bool isOfNode(const Difference& difference)
{
    return difference.within.isEmpty() && difference.object.endsWith(QLatin1String("node"));
}

void addMark(Marks& marks, const Difference& difference, std::optional<unsigned> node)
{
    if (!node)
        return;
    const Mark mark = markOf(difference.kind);
    if (difference.object == QLatin1String("connection") && difference.within.size() == 1)
        marks.wires[{*node, difference.name}] = mark;
    else // a node that has moved and changed is a changed one
        marks.nodes[*node] =
            isOfNode(difference) && marks.nodes.count(*node) == 0 ? mark : Mark::Changed;
}

void apply(const Marks& marks, Drawing& drawing)
{
    for (Box& box : drawing.boxes) {
        const auto found = marks.nodes.find(box.uid);
        if (found != marks.nodes.end())
            box.mark = found->second;
    }
    for (Wire& wire : drawing.wires) {
        const Box& fed = drawing.boxes[wire.to];
        const auto found = marks.wires.find({fed.uid, fed.inputs[wire.input].name});
        if (found != marks.wires.end())
            wire.mark = found->second;
    }
}

void markAll(Drawing& drawing, Mark mark)
{
    for (Box& box : drawing.boxes)
        box.mark = mark;
    for (Wire& wire : drawing.wires)
        wire.mark = mark;
}

bool isDrawn(const BaseObject* object)
{
    return dynamic_cast<const Doc::Graph*>(object) != nullptr ||
           dynamic_cast<const Doc::Function*>(object) != nullptr;
}

// Returns a drawing without boxes for null.
Drawing drawingOf(const GraphDrawer& drawer, const BaseObject* object, const QString& when)
{
    Drawing drawing;
    if (const auto* const graph = dynamic_cast<const Doc::Graph*>(object))
        drawing = drawer.draw(*graph);
    else if (const auto* const function = dynamic_cast<const Doc::Function*>(object))
        drawing = drawer.draw(*function);
    drawing.caption = object == nullptr ? QStringLiteral("%1: nothing").arg(when)
                                        : QStringLiteral("%1: %2").arg(when, placeOf(object));
    return drawing;
}

// Draws what differs.
class ComparisonDrawer
{
public:
    ComparisonDrawer(const Doc::Package& first, const Doc::Package& second,
                     const ContentPairs& content, const std::vector<Difference>& differences)
        : m_first(first), m_second(second), m_content(content)
    {
        for (const Difference& difference : differences) {
            auto& [before, after] = m_marks[difference.place];
            addMark(before, difference, difference.nodeBefore);
            addMark(after, difference, difference.nodeAfter);
        }
    }

    std::vector<ComparedGraph> run()
    {
        for (const BaseObject* const object : m_content.first())
            if (isDrawn(object))
                add(object, m_content.partnerOf(object));
        for (const BaseObject* const object : m_content.second())
            if (isDrawn(object) && m_content.partnerOf(object) == nullptr)
                add(nullptr, object);
        return std::move(m_graphs);
    }

private:
    void add(const BaseObject* first, const BaseObject* second)
    {
        const QString place = placeOf(second == nullptr ? first : second);
        const auto marks = m_marks.find(place);
        const bool isPair = first != nullptr && second != nullptr;
        if (isPair && (marks == m_marks.end() || isUnmarked(marks->second)))
            return;
        ComparedGraph& graph = m_graphs.emplace_back();
        graph.place = place;
        graph.before = drawingOf(m_first, first, QStringLiteral("before"));
        graph.after = drawingOf(m_second, second, QStringLiteral("after"));
        if (isPair) {
            apply(marks->second.first, graph.before);
            apply(marks->second.second, graph.after);
        } else {
            markAll(graph.before, Mark::Removed);
            markAll(graph.after, Mark::Added);
        }
    }

    static bool isUnmarked(const std::pair<Marks, Marks>& marks)
    {
        return marks.first.nodes.empty() && marks.first.wires.empty() &&
               marks.second.nodes.empty() && marks.second.wires.empty();
    }

    const GraphDrawer m_first;
    const GraphDrawer m_second;
    const ContentPairs& m_content;
    std::map<QString, std::pair<Marks, Marks>> m_marks; // by place
    std::vector<ComparedGraph> m_graphs;
};

} // namespace

std::optional<DrawnComparison> drawComparison(const PackageVersion& first,
                                              const PackageVersion& second,
                                              const ComparisonOptions& options, QString& file,
                                              QString& reason)
{
    const auto versions = openVersions(first, second, file, reason);
    if (!versions)
        return std::nullopt;
    PackageComparison comparison(*versions->first, *versions->second, options, versions->folder);
    DrawnComparison drawn;
    drawn.differences = comparison.run();
    drawn.graphs = ComparisonDrawer(*versions->first, *versions->second, comparison.content(),
                                    drawn.differences)
                       .run();
    return drawn;
}

} // namespace Ksx::Kit
