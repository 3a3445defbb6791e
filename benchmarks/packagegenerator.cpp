// Makes up a package of graphs.
#include "packagegenerator.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>

namespace Benchmark {

namespace {

// Shares in percent. Together they give a node some 680 bytes on the average, its part of what the
// graph itself takes included.
constexpr unsigned OwnParameterShare = 29;
constexpr unsigned CommonParameterShare = 5;
constexpr unsigned DynamicShare = 12; // of the parameters that can be dynamic
constexpr unsigned NamedNodeShare = 4;

constexpr unsigned OutputsPerGraph = 2;

// A number of thousandths, in the form in which a vector writes its elements.
std::string decimal(int thousandths)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.6g", static_cast<double>(thousandths) / 1000.0);
    return text.data();
}

template <typename Row>
const Row& pick(Random& random, const std::vector<Row>& rows)
{
    return rows[random.below(rows.size())];
}

} // namespace

int Random::between(int low, int high)
{
    return low + static_cast<int>(below(static_cast<std::size_t>(high - low) + 1));
}

PackageGenerator::PackageGenerator(XmlFile& xml, const GeneratorSettings& settings)
    : m_xml(xml), m_settings(settings), m_random(settings.seed)
{}

void PackageGenerator::write()
{
    m_xml.raw("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
    {
        const Element package(m_xml, "package");
        writeHead();
        writeDependencies();
        const Element content(m_xml, "content");
        for (unsigned graph = 0; graph < m_settings.graphs; ++graph)
            writeGraph(graph);
    }
    m_xml.raw("\n");
}

void PackageGenerator::writeHead()
{
    std::array<char, 48> fileUid{};
    const std::array<std::uint32_t, 4> bits{m_random.bits(), m_random.bits(), m_random.bits(),
                                            m_random.bits()};
    std::snprintf(fileUid.data(), fileUid.size(), "{%08x-%04x-4%03x-a%03x-%04x%08x}", bits[0],
                  bits[1] & 0xFFFFU, (bits[1] >> 16) & 0xFFFU, bits[2] & 0xFFFU, bits[2] >> 16,
                  bits[3]);

    m_xml.leaf("packageType", "Kestrix");
    m_xml.leaf("identifier", "benchmark");
    m_xml.leaf("desc", "Grain &amp; pores");
    m_xml.leaf("formatVersion", "1.1.0.7049");
    m_xml.leaf("updaterVersion", "1.1.0.7049");
    m_xml.leaf("platform", 1);
    m_xml.leaf("author", "benchmark");
    m_xml.leaf("fileUID", fileUid.data());
    m_xml.leaf("versionUID", m_random.bits());
    const Element configurations(m_xml, "configurations");
    m_xml.leaf("name", "default");
    m_xml.leaf("uid", nextUid());
    m_xml.empty("configuration");
}

void PackageGenerator::writeDependencies()
{
    if (m_settings.dependencies.empty()) {
        m_xml.empty("dependencies");
        return;
    }
    const Element dependencies(m_xml, "dependencies");
    for (const std::string& file : m_settings.dependencies) {
        const Element dependency(m_xml, "dependency");
        m_xml.leaf("filename", attributeText(file));
        m_xml.leaf("uid", nextUid());
        m_xml.leaf("type", "package");
        m_xml.leaf("fileUID", m_random.bits());
        m_xml.leaf("versionUID", m_random.bits());
    }
}

void PackageGenerator::writeGraph(unsigned index)
{
    const Element graph(m_xml, "graph");
    const std::string name = "graph_" + std::to_string(index);
    chooseInterface();
    m_xml.leaf("identifier", name);
    m_xml.leaf("uid", nextUid());
    {
        const Element attributes(m_xml, "attributes");
        m_xml.leaf("category", "Benchmark");
        m_xml.leaf("label", name);
    }
    writeInputs();
    writeOverloadable("primaryInput", m_imageInput);
    writeOutputs();
    writeNodes();
    {
        const Element parameters(m_xml, "baseParameters");
        writeParameter({"outputsize", ValueKind::Size, 12}, false);
        writeParameter({"format", ValueKind::Choice, 4}, false);
    }
    m_xml.empty("content");
    writeRoot();
}

void PackageGenerator::chooseInterface()
{
    m_imageInput = nextUid();
    m_imageInputType = m_random.chance(50) ? Type::Color : Type::Gray;
    m_outputs.clear();
    m_sources.clear();
    m_column = 0;
    const unsigned first = m_random.below(usages().size());
    for (unsigned i = 0; i < OutputsPerGraph; ++i)
        m_outputs.push_back({nextUid(), &usages()[(first + i) % usages().size()]});
}

void PackageGenerator::writeInputs()
{
    const Element inputs(m_xml, "paraminputs");
    writeImageInput();
    for (const InputRow& row : numberInputs())
        writeNumberInput(row);
}

void PackageGenerator::writeImageInput()
{
    const Element input(m_xml, "paraminput");
    m_xml.leaf("identifier", "image");
    m_xml.leaf("uid", m_imageInput);
    writeOverloadable("type", m_imageInputType);
    const Element widget(m_xml, "defaultWidget");
    m_xml.leaf("name", "");
    m_xml.empty("options");
}

void PackageGenerator::writeNumberInput(const InputRow& row)
{
    const Element input(m_xml, "paraminput");
    m_xml.leaf("identifier", row.identifier);
    m_xml.leaf("uid", nextUid());
    writeOverloadable("type", row.type);
    {
        const Element defaultValue(m_xml, "defaultValue");
        writeOverloadable(row.valueElement, row.value);
    }
    {
        const Element widget(m_xml, "defaultWidget");
        m_xml.leaf("name", row.widget);
        if (row.options.empty()) {
            m_xml.empty("options");
        } else {
            const Element options(m_xml, "options");
            for (const auto& [name, value] : row.options) {
                const Element option(m_xml, "option");
                m_xml.leaf("name", name);
                m_xml.leaf("value", value);
            }
        }
    }
    m_xml.leaf("group", "Surface");
}

void PackageGenerator::writeOutputs()
{
    const Element list(m_xml, "graphOutputs");
    for (const ChosenOutput& output : m_outputs) {
        const Element graphOutput(m_xml, "graphoutput");
        m_xml.leaf("identifier", output.usage->identifier);
        m_xml.leaf("uid", output.uid);
        const Element usages(m_xml, "usages");
        const Element usage(m_xml, "usage");
        m_xml.leaf("components", output.usage->components);
        m_xml.leaf("name", output.usage->name);
    }
}

void PackageGenerator::writeNodes()
{
    const Element nodes(m_xml, "compNodes");
    writeInputBridge();
    for (unsigned node = 1 + OutputsPerGraph; node < m_settings.nodesPerGraph; ++node)
        writeFilterNode();
    for (const ChosenOutput& output : m_outputs)
        writeOutputBridge(output);
}

void PackageGenerator::writeRoot()
{
    const Element root(m_xml, "root");
    const Element list(m_xml, "rootOutputs");
    for (const ChosenOutput& output : m_outputs) {
        const Element rootOutput(m_xml, "rootOutput");
        m_xml.leaf("output", output.uid);
        writeOverloadable("format", m_random.below(4));
        m_xml.leaf("usertag", "");
    }
}

void PackageGenerator::writeInputBridge()
{
    const Uid uid = nextUid();
    const Element node(m_xml, "compNode");
    m_xml.leaf("uid", uid);
    writePosition();
    writeCompOutput(uid, m_imageInputType);
    const Element implementation(m_xml, "compImplementation");
    const Element bridge(m_xml, "compInputBridge");
    m_xml.leaf("entry", m_imageInput);
    m_xml.empty("parameters");
}

void PackageGenerator::writeOutputBridge(const ChosenOutput& output)
{
    const unsigned type = output.usage->type;
    const Element node(m_xml, "compNode");
    m_xml.leaf("uid", nextUid());
    writePosition();
    {
        const Element connexions(m_xml, "connexions");
        writeConnexion("inputNodeOutput", hasSource(type) ? sourceOf(type) : anySource());
    }
    const Element implementation(m_xml, "compImplementation");
    const Element bridge(m_xml, "compOutputBridge");
    m_xml.leaf("output", output.uid);
}

void PackageGenerator::writeFilterNode()
{
    const FilterRow& filter = chooseFilter();
    const std::vector<Source> feeds = chooseFeeds(filter);
    const unsigned type = filter.output != 0 ? filter.output : feeds.front().type;
    const Uid uid = nextUid();

    const Element node(m_xml, "compNode");
    m_xml.leaf("uid", uid);
    writePosition();
    writeCompOutput(uid, type);
    if (!feeds.empty()) {
        const Element connexions(m_xml, "connexions");
        for (std::size_t i = 0; i < feeds.size(); ++i)
            writeConnexion(filter.connectors[i], feeds[i]);
    }
    {
        const Element implementation(m_xml, "compImplementation");
        const Element compFilter(m_xml, "compFilter");
        m_xml.leaf("filter", filter.name);
        writeFilterParameters(filter, type == Type::Color);
    }
    if (m_random.chance(NamedNodeShare))
        m_xml.leaf("GUIName", std::string(filter.name) + " " + std::to_string(m_column));
}

const FilterRow& PackageGenerator::chooseFilter()
{
    for (;;) {
        const FilterRow& filter = pick(m_random, filters());
        const bool needsColor = filter.inputs == Inputs::ColorOne;
        const bool needsGray =
            filter.inputs == Inputs::GrayOne || filter.inputs == Inputs::AnyThenGray;
        if ((!needsColor || hasSource(Type::Color)) && (!needsGray || hasSource(Type::Gray)))
            return filter;
    }
}

std::vector<PackageGenerator::Source> PackageGenerator::chooseFeeds(const FilterRow& filter)
{
    if (filter.inputs == Inputs::None)
        return {};
    if (filter.inputs == Inputs::ColorOne)
        return {sourceOf(Type::Color)};
    if (filter.inputs == Inputs::GrayOne)
        return {sourceOf(Type::Gray)};
    const Source first = anySource();
    if (filter.inputs == Inputs::TwoAlike)
        return {first, sourceOf(first.type)};
    if (filter.inputs == Inputs::AnyThenGray)
        return {first, sourceOf(Type::Gray)};
    return {first};
}

// No position is the origin, which is the default and would not be written.
void PackageGenerator::writePosition()
{
    const Element layout(m_xml, "GUILayout");
    m_column += 1;
    m_xml.leaf("gpos", std::to_string(m_column * 192) + " " +
                           std::to_string(m_random.between(-40, 40) * 16) + " 0");
}

void PackageGenerator::writeCompOutput(Uid node, unsigned type)
{
    const Element outputs(m_xml, "compOutputs");
    const Element output(m_xml, "compOutput");
    const Uid uid = nextUid();
    m_xml.leaf("uid", uid);
    writeOverloadable("comptype", type);
    m_sources.push_back({node, uid, type});
}

void PackageGenerator::writeConnexion(const char* identifier, const Source& source)
{
    const Element connexion(m_xml, "connexion");
    m_xml.leaf("identifier", identifier);
    writeOverloadable("connRef", source.node);
    writeOverloadable("connRefOutput", source.output);
}

void PackageGenerator::writeFilterParameters(const FilterRow& filter, bool isColor)
{
    std::vector<const ParameterRow*> chosen;
    const auto choose = [&](const std::vector<ParameterRow>& rows, unsigned share) {
        for (const ParameterRow& row : rows) {
            if (m_random.chance(share))
                chosen.push_back(&row);
        }
    };
    choose(filter.parameters, OwnParameterShare);
    choose(commonParameters(), CommonParameterShare);
    if (chosen.empty()) {
        m_xml.empty("parameters");
        return;
    }
    const Element parameters(m_xml, "parameters");
    for (const ParameterRow* row : chosen)
        writeParameter(*row, isColor);
}

void PackageGenerator::writeParameter(const ParameterRow& row, bool isColor)
{
    const bool isSize = row.kind == ValueKind::Size;
    const Element parameter(m_xml, "parameter");
    m_xml.leaf("name", row.name);
    if (isSize)
        m_xml.leaf("relativeTo", m_random.below(3));
    const Element paramValue(m_xml, "paramValue");
    if ((isSize || row.kind == ValueKind::Float1) && m_random.chance(DynamicShare))
        writeDynamicValue(isSize);
    else
        writeConstantValue(row, isColor);
}

void PackageGenerator::writeConstantValue(const ParameterRow& row, bool isColor)
{
    switch (row.kind) {
    case ValueKind::Bool:
        writeOverloadable("constantValueBool", m_random.below(2));
        break;
    case ValueKind::Choice:
        writeOverloadable("constantValueInt32", m_random.below(static_cast<unsigned>(row.limit)));
        break;
    case ValueKind::Seed:
        writeOverloadable("constantValueInt1", std::to_string(m_random.between(0, row.limit)));
        break;
    case ValueKind::Size:
        writeOverloadable("constantValueInt2", std::to_string(m_random.between(-2, row.limit)) +
                                                   " " +
                                                   std::to_string(m_random.between(-2, row.limit)));
        break;
    case ValueKind::Float1:
        writeOverloadable("constantValueFloat1", floats(1, row.limit));
        break;
    case ValueKind::Float2:
        writeOverloadable("constantValueFloat2", floats(2, row.limit));
        break;
    case ValueKind::Float4:
        writeOverloadable("constantValueFloat4", floats(4, row.limit));
        break;
    case ValueKind::ByColor:
        writeOverloadable(isColor ? "constantValueFloat4" : "constantValueFloat1",
                          floats(isColor ? 4 : 1, row.limit));
        break;
    }
}

void PackageGenerator::writeDynamicValue(bool isSize)
{
    const int count = m_random.between(3, 6);
    const Element dynamicValue(m_xml, "dynamicValue");
    const Uid first = m_nextUid;
    std::vector<Uid> earlier;
    writeOverloadable("rootnode", first + static_cast<Uid>(count) - 1);
    const Element nodes(m_xml, "paramNodes");
    for (int i = 0; i < count; ++i) {
        const Uid uid = m_nextUid;
        writeParamNode(earlier, isSize);
        earlier.push_back(uid);
    }
}

// The first two nodes give values, each further one combines two earlier ones.
void PackageGenerator::writeParamNode(const std::vector<Uid>& earlier, bool isSize)
{
    const Element node(m_xml, "paramNode");
    m_xml.leaf("uid", nextUid());
    if (earlier.size() < 2)
        writeParamLeaf(isSize);
    else
        writeParamOperator(earlier, isSize);
    const Element layout(m_xml, "GUILayout");
    m_xml.leaf("gpos", std::to_string(96 * (earlier.size() + 1)) + " " +
                           std::to_string(m_random.between(-20, 20) * 16) + " 0");
}

void PackageGenerator::writeParamOperator(const std::vector<Uid>& earlier, bool isSize)
{
    static const std::vector<const char*> functions{"add", "sub", "mul", "min", "max"};
    m_xml.leaf("function", pick(m_random, functions));
    writeOverloadable("type", isSize ? Type::Int2 : Type::Float1);
    const Element connexions(m_xml, "connexions");
    for (const char* identifier : {"a", "b"}) {
        const Element connexion(m_xml, "connexion");
        m_xml.leaf("identifier", identifier);
        writeOverloadable("connRef",
                          identifier[0] == 'a' ? earlier.back() : pick(m_random, earlier));
    }
}

void PackageGenerator::writeParamLeaf(bool isSize)
{
    const bool isVariable = m_random.chance(50);
    if (isVariable)
        m_xml.leaf("function", isSize ? "get_integer2" : "get_float1");
    else
        m_xml.leaf("function", isSize ? "const_int2" : "const_float1");
    writeOverloadable("type", isSize ? Type::Int2 : Type::Float1);
    const Element list(m_xml, "funcDatas");
    const Element data(m_xml, "funcData");
    m_xml.leaf("name", "datacontent");
    const Element constantValue(m_xml, "constantValue");
    if (isVariable)
        writeOverloadable("constantValueString", isSize ? "size" : "roughness");
    else
        writeConstantValue({"", isSize ? ValueKind::Size : ValueKind::Float1, isSize ? 12 : 4000},
                           false);
}

void PackageGenerator::writeOverloadable(const char* element, const std::string& value)
{
    const Element overloadable(m_xml, element);
    m_xml.leaf("value", value);
}

void PackageGenerator::writeOverloadable(const char* element, Uid value)
{
    writeOverloadable(element, std::to_string(value));
}

std::string PackageGenerator::floats(int count, int limit)
{
    std::string text = decimal(m_random.between(0, limit));
    for (int i = 1; i < count; ++i)
        text += " " + decimal(m_random.between(0, limit));
    return text;
}

bool PackageGenerator::hasSource(unsigned type) const
{
    return std::any_of(m_sources.begin(), m_sources.end(),
                       [type](const Source& source) { return source.type == type; });
}

PackageGenerator::Source PackageGenerator::anySource()
{
    return pick(m_random, m_sources);
}

PackageGenerator::Source PackageGenerator::sourceOf(unsigned type)
{
    std::vector<Source> fitting;
    std::copy_if(m_sources.begin(), m_sources.end(), std::back_inserter(fitting),
                 [type](const Source& source) { return source.type == type; });
    return pick(m_random, fitting);
}

} // namespace Benchmark
