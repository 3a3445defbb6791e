// Open packages with the behaviours of the tool, for programs that time edits.
#pragma once

#include "data/datapointerbox.h"
#include "services.h"
#include <memory>
#include <string>

namespace Ksx::Core {
class CompGraphController;
class PackageController;
} // namespace Ksx::Core

namespace Ksx::Data::Content {
class Graph;
class Package;
} // namespace Ksx::Data::Content

namespace Benchmarks {

using GraphBox = Orv::Data::DataPointerBox<Ksx::Data::Content::Graph>;

// Holds one package, in which the graphs are made. Graphs are added before open() alone.
class EditDocument
{
public:
    EditDocument();
    EditDocument(const EditDocument&) = delete;
    EditDocument& operator=(const EditDocument&) = delete;
    ~EditDocument();

    // Returns an empty graph.
    Ksx::Data::Content::Graph& addGraph(const std::string& identifier);
    // Opens the package, and has the behaviours attached.
    void open();

    Ksx::Core::PackageController& package() { return *m_controller; }
    // Returns the controller of the graph at a place, in the order in which they were added.
    Ksx::Core::CompGraphController& graph(std::size_t index = 0) const;
    GraphBox graphBox(std::size_t index = 0) const;

private:
    Services m_services;
    std::unique_ptr<Ksx::Data::Content::Package> m_draft; // null once it is open
    Orv::Data::DataPointerBox<Ksx::Data::Content::Package> m_package;
    std::unique_ptr<Ksx::Core::PackageController> m_controller;
};

// Adds inputs of one float, "x1" and so on, with these uids.
void addInputs(Ksx::Data::Content::Graph& graph, unsigned count);
// Adds outputs, "o1" and so on, with their nodes, whose uids lie behind those of `count` others.
void addOutputs(Ksx::Data::Content::Graph& graph, unsigned count);
// Adds filter nodes, each fed by the one behind it: all connections point forwards.
void addNodes(Ksx::Data::Content::Graph& graph, unsigned count);
// Adds filter nodes that read one of the first `inputs` inputs each, in turn.
void addReaders(Ksx::Data::Content::Graph& graph, unsigned count, unsigned inputs);
// Adds filter nodes that are fed by the first of them.
void addFedNodes(Ksx::Data::Content::Graph& graph, unsigned count);
// Adds instances of a graph of the same package, all with the first output of it.
void addInstances(Ksx::Data::Content::Graph& graph, unsigned count, const std::string& identifier);
// Adds one instance of such a graph, with so many outputs, each of which feeds a filter node.
void addFeedingInstance(Ksx::Data::Content::Graph& graph, const std::string& identifier,
                        unsigned outputs);
// Adds a node whose parameter is computed by `count` constants and a sequence, of all of them or of
// nothing.
void addFunction(Ksx::Data::Content::Graph& graph, unsigned count, bool isFed);

} // namespace Benchmarks
