// Inputs and outputs of graphs: their usages, their identifiers, and the edits that add them.
#pragma once

#include "ksx/core/uidsource.h"
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Orv::Core {
template <class T>
class ManipulatorList;
template <class T>
class ManipulatorStruct;
} // namespace Orv::Core

namespace Orv::Data {
template <class T>
class ContainerList;
} // namespace Orv::Data

namespace Ksx::Data::Content {
class Graph;
class GraphOutput;
class ParamInput;
class ParamsGraphData;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

class TakenNames;

// One purpose of an input or output, by which other programs match outputs and inputs.
struct InterfaceUsage
{
    // The name, "diffuse" for one.
    std::string name;
    // The components of the image that serve the purpose, "RGBA" for one.
    std::string components;
};

// The place behind all items of a list. Any index beyond the last item means the same.
constexpr std::size_t AtEnd = ~std::size_t{0};

// A new input or output, as the edits below take it.
struct InterfaceEntry
{
    // The identifier that is wanted. It is brought into legal form and gets a number if it is
    // taken. An empty text gives the default.
    std::string identifier;
    // One ValueType. The edit that adds an output ignores it.
    unsigned type = 0;
    // The place in the list of inputs or outputs.
    std::size_t index = AtEnd;
    // The usages, in the order in which they are stored.
    std::vector<InterfaceUsage> usages = {};
};

// Returns whether an identifier is taken by an item of a list. Make one of the three kinds below,
// use it at once, and drop it. It must not outlive the next change of the list. Copies share their
// data. Main thread.
//
// With an index of the list in the document, making one takes constant time. Else it walks over the
// list.
//
//     const std::string name = freeIdentifier("wood", defaultInputIdentifier(),
//                                             ParamInputNameExist(graph.paraminputs()));
class IdentifierTaken
{
public:
    // Returns whether an item has the identifier. The ignored item does not count.
    bool operator()(const std::string& identifier) const;

    // Returns a free identifier: `wanted` without a number at its end, and the first free number
    // from that number on. The search takes no walk over the taken numbers.
    std::string firstFree(const std::string& wanted) const;

protected:
    IdentifierTaken() = default;
    // For the kinds: reads the identifiers of a list. `ignored` may be null.
    template <class Item>
    void collect(const Orv::Data::ContainerList<Item>& list, const Item* ignored);

private:
    std::shared_ptr<const TakenNames> m_names; // of an index, or of this and its copies
    std::optional<std::string> m_ignored;      // is among the names, and does not count
};

// Knows the identifiers of the inputs of a graph.
class ParamInputNameExist : public IdentifierTaken
{
public:
    // `ignored` is an input that may have the identifier itself, or null.
    explicit ParamInputNameExist(const Orv::Data::ContainerList<Data::Content::ParamInput>& list,
                                 const Data::Content::ParamInput* ignored = nullptr);
};

// Knows the identifiers of the outputs of a graph.
class GraphOutputNameExist : public IdentifierTaken
{
public:
    // `ignored` is an output that may have the identifier itself, or null.
    explicit GraphOutputNameExist(const Orv::Data::ContainerList<Data::Content::GraphOutput>& list,
                                  const Data::Content::GraphOutput* ignored = nullptr);
};

// Knows the identifiers of the parameter sets of an FX-map.
class ParamsGraphDataNameExist : public IdentifierTaken
{
public:
    // `ignored` is a set that may have the identifier itself, or null.
    explicit ParamsGraphDataNameExist(
        const Orv::Data::ContainerList<Data::Content::ParamsGraphData>& list,
        const Data::Content::ParamsGraphData* ignored = nullptr);
};

// Returns `wanted` in its legal form if it is free, and otherwise with a number. Takes `fallback`
// for a text of which nothing is legal.
std::string freeIdentifier(const std::string& wanted, const std::string& fallback,
                           const IdentifierTaken& isTaken);

// Returns the translation of "DEFAULT_INPUT_IDENTIFIER". Without a translator that is the key.
std::string defaultInputIdentifier();
// Returns the translation of "DEFAULT_OUTPUT_IDENTIFIER". Without a translator that is the key.
std::string defaultOutputIdentifier();

// Part of an edit: adds an input to the `paraminputs` of a graph. Returns its new uid. The caller
// runs the command; see runEdit().
Uid applyAddInput(const Orv::Core::ManipulatorList<Data::Content::ParamInput>& inputs,
                  const InterfaceEntry& entry);

// Part of an edit: adds an output to a graph. Also adds the RootOutput that belongs to it, behind
// all other root outputs. Returns the new uid that both have.
Uid applyAddOutput(const Orv::Core::ManipulatorStruct<Data::Content::Graph>& graph,
                   const InterfaceEntry& entry);

} // namespace Ksx::Core
