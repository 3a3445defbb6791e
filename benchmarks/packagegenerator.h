// Makes up a package of graphs, the same for the same settings on every platform.
#pragma once

#include "packagevocabulary.h"
#include "xmlfile.h"

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace Benchmark {

struct GeneratorSettings
{
    unsigned graphs = 0;
    unsigned nodesPerGraph = 50;
    unsigned seed = 2;
    std::vector<std::string> dependencies; // file names, written as they stand
};

// Random numbers by plain remainders: the standard distributions differ between libraries.
class Random
{
public:
    explicit Random(unsigned seed) : m_engine(seed) {}

    std::uint32_t bits() { return static_cast<std::uint32_t>(m_engine()); }
    unsigned below(std::size_t bound) { return bits() % static_cast<unsigned>(bound); }
    int between(int low, int high);
    bool chance(unsigned percent) { return below(100) < percent; }

private:
    std::mt19937 m_engine;
};

// Writes one package in the current format: members in the order of the format, required ones all
// present, optional ones only when they differ from their default, and values in the form in which
// they are written. Reading and writing the file therefore gives the same bytes again.
class PackageGenerator
{
public:
    PackageGenerator(XmlFile& xml, const GeneratorSettings& settings);

    void write();

private:
    using Uid = std::uint32_t;

    // An output that feeds later nodes.
    struct Source
    {
        Uid node;
        Uid output;
        unsigned type;
    };

    struct ChosenOutput
    {
        Uid uid;
        const UsageRow* usage;
    };

    void writeHead();
    void writeDependencies();
    void writeGraph(unsigned index);
    void chooseInterface();
    void writeInputs();
    void writeImageInput();
    void writeNumberInput(const InputRow& row);
    void writeOutputs();
    void writeNodes();
    void writeRoot();

    void writeInputBridge();
    void writeOutputBridge(const ChosenOutput& output);
    void writeFilterNode();
    const FilterRow& chooseFilter();
    std::vector<Source> chooseFeeds(const FilterRow& filter);
    void writePosition();
    void writeCompOutput(Uid node, unsigned type);
    void writeConnexion(const char* identifier, const Source& source);

    void writeFilterParameters(const FilterRow& filter, bool isColor);
    void writeParameter(const ParameterRow& row, bool isColor);
    void writeConstantValue(const ParameterRow& row, bool isColor);
    void writeDynamicValue(bool isSize);
    void writeParamNode(const std::vector<Uid>& earlier, bool isSize);
    void writeParamOperator(const std::vector<Uid>& earlier, bool isSize);
    void writeParamLeaf(bool isSize);
    void writeOverloadable(const char* element, const std::string& value);
    void writeOverloadable(const char* element, Uid value);

    Uid nextUid() { return m_nextUid++; }
    std::string floats(int count, int limit);
    bool hasSource(unsigned type) const;
    Source anySource();
    Source sourceOf(unsigned type);

    XmlFile& m_xml;
    const GeneratorSettings& m_settings;
    Random m_random;
    Uid m_nextUid = 1000000; // seven digits in any package: sizes grow evenly with the graphs

    // The graph at hand.
    Uid m_imageInput = 0;
    unsigned m_imageInputType = 0;
    std::vector<ChosenOutput> m_outputs;
    std::vector<Source> m_sources;
    int m_column = 0;
};

} // namespace Benchmark
