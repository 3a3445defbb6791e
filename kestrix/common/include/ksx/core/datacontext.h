// The scope in which parameters are evaluated.
#pragma once

#include "data/datapointerbox.h"
#include <utility>
#include <vector>

namespace Orv::Data {
class BaseObject;
} // namespace Orv::Data

namespace Ksx::Core {

// A chain of document objects from the outermost on, such as the graph and the node. Empty for the
// parameters of a graph itself. A value: copies name the same objects, which may die meanwhile.
class DataContext
{
public:
    using Box = Orv::Data::DataPointerBox<Orv::Data::BaseObject>;

    DataContext() = default;
    explicit DataContext(std::vector<Box> objects) : m_objects(std::move(objects)) {}
    DataContext(const DataContext&) = default;
    DataContext& operator=(const DataContext&) = default;
    virtual ~DataContext() = default;

    const std::vector<Box>& objects() const { return m_objects; }

private:
    std::vector<Box> m_objects;
};

} // namespace Ksx::Core
