// Makes boxes and wires out of the nodes of a graph.
#include "contentindex.h"
#include "data/content/function.h"
#include "data/content/graph.h"
#include "data/content/package.h"
#include "data/desc/descriptiontables.h"
#include "data/desc/filtertable.h"
#include "data/desc/functiontable.h"
#include "data/desc/valuetype.h"
#include "drawing/drawinglayout.h"
#include "ksx/core/datapath.h"
#include "ksx/kit/drawing.h"
#include "packageparts.h"
#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace Ksx::Kit {

namespace {

namespace Doc = Data::Content;
namespace ValueType = Data::Desc::ValueType;
using Data::Desc::DescriptionTables;
using Data::Desc::FunctionsEnum;

constexpr int MaximumText = 200; // characters of a name
constexpr int MaximumNoteText = 1000;
constexpr std::size_t MaximumNotes = 1000;
// A picture of a graph beyond would show no node.
constexpr double MaximumPlace = 1e6;

QString shortText(std::string_view text, int maximum = MaximumText)
{
    return latinText(text.substr(0, static_cast<std::size_t>(maximum)));
}

QString lastSegmentOf(std::string_view path)
{
    if (!Core::DataPath::isDataPath(path))
        return shortText(path);
    const auto segments = Core::DataPath(path).segments();
    return segments.empty() ? QString() : shortText(segments.back());
}

std::optional<QPointF> placeOf(const Doc::GUILayout& layout)
{
    if (!layout.gpos().isModified())
        return std::nullopt;
    const auto x = static_cast<double>(layout.gpos().get()[0]);
    const auto y = static_cast<double>(layout.gpos().get()[1]);
    const auto isUsable = [](double value) { return std::abs(value) <= MaximumPlace; };
    return isUsable(x) && isUsable(y) ? std::optional<QPointF>({x, y}) : std::nullopt;
}

// The identifiers of inputs or outputs of a graph, by uid.
using Names = std::unordered_map<unsigned, QString>;

template <class Items>
Names namesOf(const Items& items)
{
    Names names;
    for (const auto& item : items)
        names.emplace(item.uid().get(), shortText(item.identifier().get()));
    return names;
}

QString nameOf(const Names& names, unsigned uid)
{
    const auto found = names.find(uid);
    return found == names.end() ? QStringLiteral("#%1").arg(uid) : found->second;
}

// Collects the parts of a drawing.
class Sketch
{
public:
    // Returns null where the drawing is full.
    Box* addBox(unsigned uid, std::string_view userName, const Doc::GUILayout& layout)
    {
        if (m_drawing.boxes.size() == MaximumBoxes) {
            ++m_drawing.leftOut;
            return nullptr;
        }
        m_numbers.emplace(uid, m_drawing.boxes.size());
        m_places.boxes.push_back(placeOf(layout));
        m_outputUids.emplace_back();
        Box& box = m_drawing.boxes.emplace_back();
        box.uid = uid;
        box.title = shortText(userName);
        return &box;
    }
    void addInput(Box& box, const QString& name, unsigned type) { add(box.inputs, name, type); }
    // To the box that was added last.
    void addOutput(Box& box, unsigned uid, const QString& name, unsigned type)
    {
        if (add(box.outputs, name, type))
            m_outputUids.back().push_back(uid);
    }
    // Adds the inputs that are fed and that no table knows.
    template <class Connections>
    void addFedInputs(Box& box, const Connections& connections)
    {
        for (const Doc::Connexion& connexion : connections) {
            const QString name = shortText(connexion.identifier().get());
            if (indexOf(box.inputs, name) == box.inputs.size())
                addInput(box, name, ValueType::Unknown);
        }
    }

    // Adds the wires to the nodes, when all boxes are there.
    template <class Nodes>
    void addWires(const Nodes& nodes)
    {
        std::size_t number = 0;
        for (const auto& node : nodes) {
            if (number == m_drawing.boxes.size())
                return;
            for (const Doc::Connexion& connexion : node.connexions())
                addWire(connexion, number);
            ++number;
        }
    }

    template <class Objects>
    void addNotes(const Objects& objects)
    {
        for (const Doc::GUIObject& object : objects) {
            if (object.GUIName().get().empty())
                continue;
            if (m_drawing.notes.size() == MaximumNotes) {
                ++m_drawing.leftOut;
                continue;
            }
            Note& note = m_drawing.notes.emplace_back();
            note.uid = object.uid().get();
            note.text = shortText(object.GUIName().get(), MaximumNoteText);
            note.isFrame = object.type().get() == "frame";
            m_places.notes.push_back(placeOf(object.GUILayout()));
        }
    }

    void setResult(const Doc::RootNode& root)
    {
        const auto found = m_numbers.find(root.value().get());
        if (root.isModified() && found != m_numbers.end())
            m_drawing.boxes[found->second].isResult = true;
    }

    Drawing take()
    {
        layOut(m_drawing, m_places);
        return std::move(m_drawing);
    }

private:
    bool add(std::vector<Connector>& connectors, const QString& name, unsigned type)
    {
        const bool hasRoom = connectors.size() < MaximumConnectors;
        if (hasRoom)
            connectors.push_back({name, type});
        else
            ++m_drawing.leftOut;
        return hasRoom;
    }

    static std::size_t indexOf(const std::vector<Connector>& connectors, const QString& name)
    {
        const auto found = std::find_if(connectors.begin(), connectors.end(),
                                        [&](const Connector& one) { return one.name == name; });
        return static_cast<std::size_t>(found - connectors.begin());
    }

    // A connection that names no output comes from the first one, as has the node of a function.
    std::size_t outputOf(std::size_t box, const Doc::Connexion& connexion) const
    {
        const auto& uids = m_outputUids[box];
        const auto found =
            std::find(uids.begin(), uids.end(), connexion.connRefOutput().value().get());
        return found == uids.end() ? 0 : static_cast<std::size_t>(found - uids.begin());
    }

    void addWire(const Doc::Connexion& connexion, std::size_t to)
    {
        const auto from = m_numbers.find(connexion.connRef().value().get());
        if (!connexion.connRef().isModified() || from == m_numbers.end())
            return;
        auto& boxes = m_drawing.boxes;
        const std::size_t input =
            indexOf(boxes[to].inputs, shortText(connexion.identifier().get()));
        const std::size_t output = outputOf(from->second, connexion);
        if (m_drawing.wires.size() == MaximumWires || input == boxes[to].inputs.size() ||
            output >= boxes[from->second].outputs.size()) {
            ++m_drawing.leftOut;
            return;
        }
        m_drawing.wires.push_back({from->second, output, to, input});
        unsigned& type = boxes[to].inputs[input].type;
        if (type == ValueType::Unknown)
            type = boxes[from->second].outputs[output].type;
    }

    Drawing m_drawing;
    StoredPlaces m_places;
    std::unordered_map<unsigned, std::size_t> m_numbers; // of the boxes, by uid, the first of each
    std::vector<std::vector<unsigned>> m_outputUids;     // by box
};

// The kind of a function, as pictures show it.
BoxKind kindOf(const Data::Desc::Function& function)
{
    const auto kind = static_cast<FunctionsEnum>(function.kind);
    if (kind == FunctionsEnum::Instance)
        return BoxKind::Instance;
    if (kind == FunctionsEnum::Set || kind == FunctionsEnum::GetPath ||
        Data::Desc::isTypedGetter(function.kind))
        return BoxKind::Variable;
    if (kind >= FunctionsEnum::ConstString && kind <= FunctionsEnum::ConstFloat4)
        return BoxKind::Constant;
    return BoxKind::Operation;
}

// The name or the value that a node of a function holds.
std::string dataOf(const Doc::ParamNode& node)
{
    for (const Doc::FuncData& data : node.funcDatas())
        if (!data.constantValue().isEmpty())
            return textOfConstant(*data.constantValue().get());
    return {};
}

void setTitle(Box& box, const QString& name)
{
    if (box.title.isEmpty())
        box.title = name;
}

// Returns whether a path leads into the package that names itself by those uids.
bool isOwnPath(std::string_view path, const std::set<unsigned>& ownUids)
{
    const auto uid = Core::DataPath::dependencyOf(path);
    return Core::DataPath::isDataPath(path) && (!uid || ownUids.count(*uid) == 1);
}

void addFunctionNode(Sketch& sketch, const Doc::ParamNode& node, const std::set<unsigned>& ownUids)
{
    Box* const box = sketch.addBox(node.uid().get(), node.GUIName().get(), node.GUILayout());
    if (box == nullptr)
        return;
    const auto* const known = DescriptionTables::instance().functions().find(node.function().get());
    const QString name = shortText(node.function().get());
    const std::string data = dataOf(node);
    box->isDisabled = node.disabled().value().get();
    box->kind = known == nullptr ? BoxKind::Other : kindOf(*known);
    if (box->kind == BoxKind::Instance) {
        box->target = shortText(data, MaximumNoteText);
        box->isOwnTarget = isOwnPath(data, ownUids);
        setTitle(*box, lastSegmentOf(data));
    }
    setTitle(*box, data.empty() ? name : shortText(data));
    box->detail = box->title == name ? QStringLiteral("function") : name;
    if (known != nullptr && box->kind != BoxKind::Instance)
        for (const Data::Desc::FunctionInput& input : known->inputs)
            sketch.addInput(*box, shortText(input.identifier), ValueType::Unknown);
    sketch.addFedInputs(*box, node.connexions());
    sketch.addOutput(*box, 0, {}, node.type().value().get());
}

Drawing drawingOf(const Doc::DynamicValue& body, const std::set<unsigned>& ownUids)
{
    Sketch sketch;
    for (const Doc::ParamNode& node : body.paramNodes())
        addFunctionNode(sketch, node, ownUids);
    sketch.addWires(body.paramNodes());
    sketch.addNotes(body.GUIObjects());
    sketch.setResult(body.rootnode());
    return sketch.take();
}

// Draws the nodes of a graph of images.
class GraphSketch
{
public:
    GraphSketch(const Doc::Graph& graph, const ContentIndex& index,
                const std::set<unsigned>& ownUids)
        : m_graph(graph), m_index(index), m_ownUids(ownUids)
    {}

    Drawing run()
    {
        for (const Doc::CompNode& node : m_graph.compNodes())
            if (Box* const box =
                    m_sketch.addBox(node.uid().get(), node.GUIName().get(), node.GUILayout()))
                fill(*box, node);
        m_sketch.addWires(m_graph.compNodes());
        m_sketch.addNotes(m_graph.GUIObjects());
        return m_sketch.take();
    }

private:
    void fill(Box& box, const Doc::CompNode& node)
    {
        const auto* const implementation = node.compImplementation().get();
        box.isDisabled = node.disabled().value().get();
        m_outputNames.clear();
        if (const auto* filter = dynamic_cast<const Doc::CompFilter*>(implementation))
            fillFilter(box, *filter);
        else if (const auto* instance = dynamic_cast<const Doc::CompInstance*>(implementation))
            fillInstance(box, *instance);
        else if (const auto* input = dynamic_cast<const Doc::CompInputBridge*>(implementation))
            describe(box, BoxKind::Input, nameOf(m_inputs, input->entry().get()),
                     QStringLiteral("input"));
        else if (const auto* output = dynamic_cast<const Doc::CompOutputBridge*>(implementation))
            describe(box, BoxKind::Output, nameOf(m_outputs, output->output().get()),
                     QStringLiteral("output"));
        else if (implementation != nullptr)
            describe(box, BoxKind::Other, latinText(implementation->getMeta().name), {});
        m_sketch.addFedInputs(box, node.connexions());
        for (const Doc::CompOutput& output : node.compOutputs())
            m_sketch.addOutput(box, output.uid().get(), m_outputNames[output.uid().get()],
                               output.comptype().value().get());
    }

    static void describe(Box& box, BoxKind kind, const QString& name, const QString& detail)
    {
        box.kind = kind;
        setTitle(box, name);
        box.detail = box.title == name ? detail : name;
    }

    void fillFilter(Box& box, const Doc::CompFilter& filter)
    {
        const std::string& name = filter.filter().get();
        describe(box, BoxKind::Filter, shortText(name), QStringLiteral("filter"));
        const auto* const known = DescriptionTables::instance().filters().find(name);
        if (known != nullptr)
            for (const Data::Desc::Parameter* input : known->inputs)
                m_sketch.addInput(box, shortText(input->identifier), input->type);
    }

    void fillInstance(Box& box, const Doc::CompInstance& instance)
    {
        const std::string& path = instance.path().value().get();
        describe(box, BoxKind::Instance, lastSegmentOf(path), QStringLiteral("graph"));
        box.target = shortText(path, MaximumNoteText);
        for (const Doc::OutputBridging& bridging : instance.outputBridgings())
            m_outputNames.emplace(bridging.uid().get(), shortText(bridging.identifier().get()));
        box.isOwnTarget = isOwnPath(path, m_ownUids);
        if (!box.isOwnTarget)
            return;
        // Of a graph of another package the inputs that are fed are known, and no others.
        if (const auto* graph =
                dynamic_cast<const Doc::Graph*>(m_index.objectOf(Core::DataPath(path))))
            for (const Doc::ParamInput& input : graph->paraminputs())
                if (ValueType::isImage(input.type().value().get()))
                    m_sketch.addInput(box, shortText(input.identifier().get()),
                                      input.type().value().get());
    }

    const Doc::Graph& m_graph;
    const ContentIndex& m_index;
    const std::set<unsigned>& m_ownUids;
    const Names m_inputs = namesOf(m_graph.paraminputs());
    const Names m_outputs = namesOf(m_graph.graphOutputs());
    Names m_outputNames; // of the node at hand
    Sketch m_sketch;
};

// Returns the uids of the dependencies by which a package names itself.
std::set<unsigned> ownUidsOf(const Doc::Package& package)
{
    std::set<unsigned> uids;
    for (const Doc::Dependency& dependency : package.dependencies())
        if (dependency.filename().get() == ItselfName)
            uids.insert(dependency.uid().get());
    return uids;
}

} // namespace

QString wordOf(LayoutWay way)
{
    switch (way) {
    case LayoutWay::Stored:
        return QStringLiteral("stored");
    case LayoutWay::Computed:
        return QStringLiteral("computed");
    default:
        return QStringLiteral("columns");
    }
}

GraphDrawer::GraphDrawer(const Doc::Package& package)
    : m_index(std::make_unique<const ContentIndex>(package)), m_ownUids(ownUidsOf(package))
{}

GraphDrawer::~GraphDrawer() = default;

Drawing GraphDrawer::draw(const Doc::Graph& graph) const
{
    return GraphSketch(graph, *m_index, m_ownUids).run();
}

Drawing GraphDrawer::draw(const Doc::Function& function) const
{
    const auto* const body = dynamic_cast<const Doc::DynamicValue*>(function.paramValue().get());
    return body == nullptr ? Drawing() : drawingOf(*body, m_ownUids);
}

Drawing GraphDrawer::draw(const Doc::DynamicValue& body) const
{
    return drawingOf(body, m_ownUids);
}

Drawing GraphDrawer::draw(const Doc::ParamsGraph& graph) const
{
    Sketch sketch;
    for (const Doc::ParamsGraphNode& node : graph.paramsGraphNodes()) {
        Box* const box = sketch.addBox(node.uid().get(), node.GUIName().get(), node.GUILayout());
        if (box == nullptr)
            continue;
        const QString type = shortText(node.type().get());
        box->kind = BoxKind::Filter;
        box->isDisabled = node.disabled().value().get();
        setTitle(*box, type);
        box->detail = box->title == type ? QStringLiteral("node of an FX-map") : type;
        sketch.addFedInputs(*box, node.connexions());
        sketch.addOutput(*box, 0, {}, ValueType::FxMap);
    }
    sketch.addWires(graph.paramsGraphNodes());
    sketch.addNotes(graph.GUIObjects());
    sketch.setResult(graph.rootnode());
    return sketch.take();
}

} // namespace Ksx::Kit
