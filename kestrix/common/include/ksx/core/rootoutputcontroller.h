// The controller of the way in which an output of a graph is rendered.
#pragma once

#include "data/datapointerbox.h"
#include "ksx/core/uidsource.h"
#include <cstdint>

namespace Ksx::Data::Content {
class Graph;
class RootOutput;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Shows and edits a RootOutput: pixel format and mipmaps of the image that an output gives. Each
// output of a graph has one root output, which names it by its uid.
//
// The controller of the graph owns it. It dies when the root output leaves the list of the graph.
// An undo makes another controller. Main thread. It has no signals.
class RootOutputController
{
public:
    // For CompGraphController. Both objects are part of a document.
    RootOutputController(const Data::Content::RootOutput& output,
                         const Data::Content::Graph& graph);
    RootOutputController(const RootOutputController&) = delete;
    RootOutputController& operator=(const RootOutputController&) = delete;
    virtual ~RootOutputController();

    // Returns the root output in the document. Returns null once it has died.
    const Data::Content::RootOutput* rootOutput() const;
    // Returns the graph of the root output. Returns null once it has died.
    const Data::Content::Graph* graph() const;

    // Returns the uid of the output that the root output belongs to. Returns NoUid once the root
    // output has died.
    Uid outputUid() const;
    // Returns the number of the pixel format. Returns 0 once the root output has died.
    std::uint32_t format() const;
    // Returns the number of mipmap levels. Returns 0 once the root output has died.
    std::uint32_t mipmaps() const;

    // Writes the pixel format. Overloads of the value are left alone. This is one undoable command,
    // also for the present value. Returns false if the root output has died.
    bool setFormat(std::uint32_t format);
    // Writes the number of mipmap levels, in the same way.
    bool setMipmaps(std::uint32_t mipmaps);

private:
    Orv::Data::DataPointerBox<Data::Content::RootOutput> m_output;
    Orv::Data::DataPointerBox<Data::Content::Graph> m_graph;
};

} // namespace Ksx::Core
