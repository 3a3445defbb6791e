// The scope in which parameters are evaluated.
#pragma once

#include "data/datapointerbox.h"
#include <utility>
#include <vector>

namespace Orv::Data {
class BaseObject;
} // namespace Orv::Data

namespace Ksx::Core {

// A chain of document objects from the outermost on: for the parameters of a node, the graph and
// the node. Parameters inherit from the graph in it. Empty for the parameters of a graph itself.
//
// A value: copies name the same objects. The objects may die meanwhile; their boxes are empty then.
// Main thread, like the objects.
class DataContext
{
public:
    using Box = Orv::Data::DataPointerBox<Orv::Data::BaseObject>;

    // Makes the empty scope.
    DataContext() = default;
    // Makes the scope of the parameters of the last object.
    explicit DataContext(std::vector<Box> objects) : m_objects(std::move(objects)) {}
    DataContext(const DataContext&) = default;
    DataContext& operator=(const DataContext&) = default;
    virtual ~DataContext() = default;

    // Returns the objects, the outermost first.
    const std::vector<Box>& objects() const { return m_objects; }

private:
    std::vector<Box> m_objects;
};

} // namespace Ksx::Core
