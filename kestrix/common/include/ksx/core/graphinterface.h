// How inputs and outputs come into the lists by which a graph is used.
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

// What an input or output is for.
struct InterfaceUsage
{
    std::string name;       // such as "diffuse"
    std::string components; // such as "RGBA"
};

// A place behind all items of a list; so is any other that the list does not have.
constexpr std::size_t AtEnd = ~std::size_t{0};

// A new input or output.
struct InterfaceEntry
{
    std::string identifier; // as wanted; empty for the default
    unsigned type = 0;      // one ValueType; not kept for outputs
    std::size_t index = AtEnd;
    std::vector<InterfaceUsage> usages = {};
};

// Is an identifier taken by an item of a list? A snapshot: it must not outlive the next change of
// the list. The item that is ignored may be null.
class IdentifierTaken
{
public:
    bool operator()(const std::string& identifier) const;
    // Returns `wanted`, less a number that it ends in, with the first free number behind it: what
    // IdentifierSuite::makeUnique() finds, without a question for each number.
    std::string firstFree(const std::string& wanted) const;

protected:
    IdentifierTaken() = default;
    template <class Item>
    void collect(const Orv::Data::ContainerList<Item>& list, const Item* ignored);

private:
    std::shared_ptr<const TakenNames> m_names; // of an index, or of this and its copies
    std::optional<std::string> m_ignored;      // is among the names, and does not count
};

class ParamInputNameExist : public IdentifierTaken
{
public:
    explicit ParamInputNameExist(const Orv::Data::ContainerList<Data::Content::ParamInput>& list,
                                 const Data::Content::ParamInput* ignored = nullptr);
};

class GraphOutputNameExist : public IdentifierTaken
{
public:
    explicit GraphOutputNameExist(const Orv::Data::ContainerList<Data::Content::GraphOutput>& list,
                                  const Data::Content::GraphOutput* ignored = nullptr);
};

class ParamsGraphDataNameExist : public IdentifierTaken
{
public:
    explicit ParamsGraphDataNameExist(
        const Orv::Data::ContainerList<Data::Content::ParamsGraphData>& list,
        const Data::Content::ParamsGraphData* ignored = nullptr);
};

// `wanted` in its legal form, if that is free, otherwise with a number. `fallback` stands in for a
// text of which nothing is legal.
std::string freeIdentifier(const std::string& wanted, const std::string& fallback,
                           const IdentifierTaken& isTaken);

// The translations of "DEFAULT_INPUT_IDENTIFIER" and "DEFAULT_OUTPUT_IDENTIFIER".
std::string defaultInputIdentifier();
std::string defaultOutputIdentifier();

// Parts of edits; both answer the uid of what they have inserted.
//
// Adds an input to the `paraminputs` of a graph.
Uid applyAddInput(const Orv::Core::ManipulatorList<Data::Content::ParamInput>& inputs,
                  const InterfaceEntry& entry);
// Adds an output to a graph and, behind all others of its root, the RootOutput that belongs to it.
Uid applyAddOutput(const Orv::Core::ManipulatorStruct<Data::Content::Graph>& graph,
                   const InterfaceEntry& entry);

} // namespace Ksx::Core
