// How one output of a graph is rendered.
#pragma once

#include "data/datapointerbox.h"
#include "ksx/core/uidsource.h"
#include <cstdint>

namespace Ksx::Data::Content {
class Graph;
class RootOutput;
} // namespace Ksx::Data::Content

namespace Ksx::Core {

// Owned by the controller of the graph. Once the document object has died, numbers are 0 and
// nothing can be edited. Overloads of the two values are left alone.
class RootOutputController
{
public:
    RootOutputController(const Data::Content::RootOutput& output,
                         const Data::Content::Graph& graph);
    RootOutputController(const RootOutputController&) = delete;
    RootOutputController& operator=(const RootOutputController&) = delete;
    virtual ~RootOutputController();

    // Null once they have died.
    const Data::Content::RootOutput* rootOutput() const;
    const Data::Content::Graph* graph() const;

    Uid outputUid() const; // of the GraphOutput; NoUid once the object has died
    std::uint32_t format() const;
    std::uint32_t mipmaps() const;
    // One command each; false if the object has died.
    bool setFormat(std::uint32_t format);
    bool setMipmaps(std::uint32_t mipmaps);

private:
    Orv::Data::DataPointerBox<Data::Content::RootOutput> m_output;
    Orv::Data::DataPointerBox<Data::Content::Graph> m_graph;
};

} // namespace Ksx::Core
