// Finds whatever of a package has a picture.
#pragma once

#include "ksx/kit/drawing.h"
#include <QString>
#include <vector>

namespace Ksx::Data::Content {
class ContentObjectBase;
class Function;
class Graph;
class Package;
} // namespace Ksx::Data::Content

namespace Ksx::Kit {

// One of both is there.
struct DrawnObject
{
    const Data::Content::Graph* graph = nullptr;
    const Data::Content::Function* function = nullptr;
    // "pkg://group/graph".
    QString place;
};

// The bound of the number of pictures of a package. A hostile one has a million graphs.
constexpr std::size_t MaximumPictures = 10000;

struct DrawnObjects
{
    // In the order of the package, owners first.
    std::vector<DrawnObject> objects;
    // The number of the others, beyond the bound.
    std::size_t leftOut = 0;
};

// Returns the graphs and functions of a package.
DrawnObjects drawnObjectsOf(const Data::Content::Package& package);

// Draws one of them.
Drawing drawingOf(const GraphDrawer& drawer, const DrawnObject& object);

} // namespace Ksx::Kit
