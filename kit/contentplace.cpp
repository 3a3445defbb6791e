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
    std::vector<QString> names;
    for (object = contentObjectOf(object); object != nullptr; object = contentOwnerOf(*object))
        names.push_back(latinText(
            dynamic_cast<const Doc::ContentInterface*>(object)->identifierAttribute().get()));
    QString place;
    for (auto name = names.rbegin(); name != names.rend(); ++name)
        place = placeIn(place, *name);
    return place;
}

} // namespace Ksx::Kit
