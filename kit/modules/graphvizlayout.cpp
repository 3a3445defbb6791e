// Layouts by the library Graphviz. In a library of its own, since few graphs need one, and what
// Graphviz links would multiply the time that the tool takes to start.
#include "drawing/layoutmodule.h"
#include <graphviz/cgraph.h>
#include <graphviz/gvc.h>
#include <mutex>
#include <string>
#include <vector>

namespace {

using Ksx::Kit::LayoutBox;
using Ksx::Kit::LayoutWire;

constexpr double PointsPerInch = 72; // sizes go in in inches, and places come out in points

// Graphviz takes texts that it does not change by pointers to writable characters.
char* text(const char* constant)
{
    return const_cast<char*>(constant);
}

// A graph of Graphviz, which is freed with its layout.
class Layout
{
public:
    Layout() : m_graph(agopen(text("graph"), Agdirected, nullptr)) {}
    Layout(const Layout&) = delete;
    Layout& operator=(const Layout&) = delete;
    ~Layout()
    {
        if (m_isLaidOut)
            gvFreeLayout(context(), m_graph);
        if (m_graph != nullptr)
            agclose(m_graph);
    }

    bool isReady() const { return context() != nullptr && m_graph != nullptr; }

    void declareAttributes()
    {
        struct Attribute
        {
            int kind;
            const char* name;
            const char* value;
        };
        static constexpr Attribute attributes[] = {
            {AGRAPH, "rankdir", "LR"},  {AGRAPH, "nodesep", "0.22"},
            {AGRAPH, "ranksep", "0.7"}, {AGRAPH, "splines", "false"}, // only the places are of use
            {AGRAPH, "nslimit", "4"},   {AGRAPH, "nslimit1", "4"},
            {AGRAPH, "mclimit", "0.5"}, {AGNODE, "shape", "box"},
            {AGNODE, "label", ""},      {AGNODE, "fixedsize", "true"},
            {AGNODE, "width", "1"},     {AGNODE, "height", "1"},
        };
        for (const Attribute& one : attributes)
            agattr(m_graph, one.kind, text(one.name), text(one.value));
    }

    void add(const LayoutBox& box)
    {
        Agnode_t* const node = agnode(m_graph, std::to_string(m_nodes.size()).data(), 1);
        // The digits of std::to_string() do not depend on a locale if it is given an integer.
        const auto inches = [](double size) {
            return std::to_string(static_cast<long>(size / PointsPerInch * 1000)) + "e-3";
        };
        agset(node, text("width"), inches(box.width).data());
        agset(node, text("height"), inches(box.height).data());
        m_nodes.push_back(node);
    }
    void add(const LayoutWire& wire)
    {
        agedge(m_graph, m_nodes[wire.from], m_nodes[wire.to], nullptr, 1);
    }

    bool run()
    {
        m_isLaidOut = gvLayout(context(), m_graph, "dot") == 0;
        return m_isLaidOut;
    }

    void tell(std::size_t number, LayoutBox& box) const
    {
        const pointf place = ND_coord(m_nodes[number]);
        box.x = place.x;
        box.y = -place.y; // theirs goes up
    }

private:
    // Loads what it needs of the library once, and is kept to the end of the process.
    static GVC_t* context()
    {
        static GVC_t* const one = gvContext();
        return one;
    }

    Agraph_t* m_graph;
    std::vector<Agnode_t*> m_nodes;
    bool m_isLaidOut = false;
};

} // namespace

extern "C" __attribute__((visibility("default"))) bool
ksxLayOut(LayoutBox* boxes, std::size_t boxCount, const LayoutWire* wires, std::size_t wireCount)
{
    // The library has global state.
    static std::mutex mutex;
    const std::lock_guard<std::mutex> lock(mutex);
    agseterr(AGMAX); // prints nothing
    Layout layout;
    if (!layout.isReady())
        return false;
    layout.declareAttributes();
    for (std::size_t i = 0; i < boxCount; ++i)
        layout.add(boxes[i]);
    for (std::size_t i = 0; i < wireCount; ++i)
        layout.add(wires[i]);
    if (!layout.run())
        return false;
    for (std::size_t i = 0; i < boxCount; ++i)
        layout.tell(i, boxes[i]);
    return true;
}
