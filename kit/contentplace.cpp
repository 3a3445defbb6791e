#include "contentplace.h"

#include "data/attribute.h"
#include "data/content/contentobjectbase.h"
#include "findinglist.h"
#include "packageparts.h"
#include <vector>

namespace Ksx::Kit {

namespace Doc = Data::Content;
using Orv::Data::BaseObject;

const BaseObject* contentObjectOf(const BaseObject* object)
{
    while (object != nullptr && dynamic_cast<const Doc::ContentInterface*>(object) == nullptr)
        object = object->getParent();
    return object;
}

const BaseObject* contentOwnerOf(const BaseObject& object)
{
    return contentObjectOf(object.getParent());
}

QString placeOf(const BaseObject* object)
{
    std::vector<const BaseObject*> objects;
    for (object = contentObjectOf(object); object != nullptr; object = contentOwnerOf(*object))
        objects.push_back(object);
    QString place;
    for (auto one = objects.rbegin(); one != objects.rend() && !isCut(place); ++one)
        place = placeIn(
            place,
            latinText(
                dynamic_cast<const Doc::ContentInterface*>(*one)->identifierAttribute().get()));
    return place;
}

} // namespace Ksx::Kit
