#include "ksx/core/filereferences.h"

#include "data/content/package.h"
#include "data/content/resource.h"
#include "data/treewalk.h"
#include "ksx/core/contentwalk.h"

namespace Ksx::Core {

namespace {

TextAttribute* asText(Orv::Data::BaseObject& object)
{
    if (object.kind() != Orv::Data::ObjectKind::Attribute ||
        !static_cast<Orv::Data::AttributeBase&>(object).isText())
        return nullptr;
    return static_cast<TextAttribute*>(&object);
}

} // namespace

// Package files and resources are all that a file path stands in; a walk over the whole tree would
// be a large part of the time of opening a package.
std::vector<TextAttribute*> fileReferencesOf(Data::Content::Package& package)
{
    std::vector<TextAttribute*> references;
    auto& dependencies = package.dependencies();
    for (std::size_t i = 0; i < dependencies.size(); ++i)
        references.push_back(&dependencies.at(i).filename());
    visitContent(package, [&](Data::Content::ContentObjectBase& object) {
        if (auto* resource = dynamic_cast<Data::Content::Resource*>(&object))
            references.push_back(&resource->filepath());
    });
    return references;
}

void visitTexts(Data::Content::Package& package, const std::function<void(TextAttribute&)>& visit)
{
    Orv::Data::visitTree(static_cast<Orv::Data::BaseObject&>(package),
                         [&](Orv::Data::BaseObject& object) {
                             if (TextAttribute* text = asText(object))
                                 visit(*text);
                         });
}

} // namespace Ksx::Core
