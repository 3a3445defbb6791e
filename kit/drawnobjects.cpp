#include "drawnobjects.h"

#include "contentplace.h"
#include "data/content/function.h"
#include "data/content/graph.h"
#include "data/content/package.h"
#include "findinglist.h"
#include "ksx/core/contentwalk.h"
#include "packageparts.h"
#include <unordered_map>

namespace Ksx::Kit {

namespace Doc = Data::Content;

namespace {

using Orv::Data::BaseObject;

// Makes the paths of objects, of each owner once.
class Places
{
public:
    QString of(const BaseObject* object)
    {
        std::vector<const BaseObject*> open;
        QString place;
        for (; object != nullptr; object = contentOwnerOf(*object)) {
            const auto known = m_places.find(object);
            if (known != m_places.end()) {
                place = known->second;
                break;
            }
            open.push_back(object);
        }
        for (auto one = open.rbegin(); one != open.rend(); ++one) {
            const auto* const named = dynamic_cast<const Doc::ContentInterface*>(*one);
            place = placeIn(place, latinText(named->identifierAttribute().get()));
            m_places.emplace(*one, place);
        }
        return place;
    }

private:
    std::unordered_map<const BaseObject*, QString> m_places;
};

} // namespace

DrawnObjects drawnObjectsOf(const Doc::Package& package)
{
    DrawnObjects found;
    Places places;
    Core::visitContent(package, [&](const Doc::ContentObjectBase& item) {
        DrawnObject object;
        object.graph = dynamic_cast<const Doc::Graph*>(&item);
        object.function = dynamic_cast<const Doc::Function*>(&item);
        if (object.graph == nullptr && object.function == nullptr)
            return;
        if (found.objects.size() == MaximumPictures) {
            ++found.leftOut;
            return;
        }
        object.place = places.of(&item);
        found.objects.push_back(object);
    });
    return found;
}

Drawing drawingOf(const GraphDrawer& drawer, const DrawnObject& object)
{
    return object.graph != nullptr ? drawer.draw(*object.graph) : drawer.draw(*object.function);
}

} // namespace Ksx::Kit
