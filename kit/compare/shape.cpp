#include "compare/shape.h"

#include "compare/references.h"
#include "data/attributebase.h"
#include "data/containerstruct.h"

namespace Ksx::Kit {

namespace {

using Orv::Data::BaseObject;
using Orv::Data::ObjectKind;

// The number in a path to another package comes from the clock.
Shape shapeOfLeaf(const BaseObject& leaf)
{
    if (referenceOf(leaf))
        return 0;
    const std::string text = static_cast<const Orv::Data::AttributeBase&>(leaf).toString();
    return shapeOf(std::string_view(text).substr(0, text.find("?dependency=")));
}

bool counts(const Orv::Data::ObjectMeta& meta)
{
    return meta.name != "uid" && meta.name != "connexions" && meta.name != "content" &&
           !isLayout(meta);
}

Shape shapeWithout(std::string_view name, const BaseObject& object)
{
    if (object.kind() == ObjectKind::Attribute)
        return shapeOfLeaf(object);
    const auto& container = static_cast<const Orv::Data::Container&>(object);
    Shape shape = shapeOf(object.getMeta().name);
    for (std::size_t i = 0; i < container.childCount(); ++i) {
        const BaseObject& child = *container.childAt(i);
        const std::string_view element = child.getMeta().name;
        // Optional members that have their default are as good as missing.
        if (counts(child.getMeta()) && element != name &&
            (child.isModified() || !child.getMeta().isOptional))
            shape = joined(joined(shape, shapeOf(element)), shapeWithout({}, child));
    }
    return shape;
}

// Returns 0 without items. The items have no order.
Shape shapeOfNames(const BaseObject& list)
{
    Shape shape = 0;
    for (const BaseObject* const item :
         itemsOf(static_cast<const Orv::Data::ContainerListBase&>(list)))
        shape += joined(shapeOf(item->getMeta().name), shapeOf(*nameOf(*item)));
    return shape;
}

} // namespace

Shape joined(Shape first, Shape second)
{
    // The finalizer of SplitMix64, by Steele, Lea and Flood.
    Shape mixed = first * 0x9E3779B97F4A7C15u + second + 0x9E3779B97F4A7C15u;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9u;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBu;
    return mixed ^ (mixed >> 31);
}

Shape shapeOf(std::string_view text)
{
    return std::hash<std::string_view>{}(text);
}

Shape shapeOf(const BaseObject& item)
{
    if (item.getMeta().name == "group")
        return shapeOfNames(*memberOf(item, "content"));
    return shapeWithout(kindOf(item).name, item);
}

} // namespace Ksx::Kit
