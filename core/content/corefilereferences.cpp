#include "ksx/core/filereferences.h"

#include "data/content/package.h"
#include "data/content/resource.h"
#include "data/treewalk.h"
#include "ksx/core/contentwalk.h"

namespace Ksx::Core {

namespace {

const TextAttribute* asText(const Orv::Data::BaseObject& object)
{
    if (object.kind() != Orv::Data::ObjectKind::Attribute ||
        !static_cast<const Orv::Data::AttributeBase&>(object).isText())
        return nullptr;
    return static_cast<const TextAttribute*>(&object);
}

} // namespace

// Package files and resources are all that a file path stands in; a walk over the whole tree would
// be a large part of the time of opening a package.
std::vector<const TextAttribute*> fileReferencesOf(const Data::Content::Package& package)
{
    std::vector<const TextAttribute*> references;
    for (const Data::Content::Dependency& dependency : package.dependencies())
        references.push_back(&dependency.filename());
    visitContent(package, [&](const Data::Content::ContentObjectBase& object) {
        if (const auto* resource = dynamic_cast<const Data::Content::Resource*>(&object))
            references.push_back(&resource->filepath());
    });
    return references;
}

std::vector<TextAttribute*> fileReferencesOf(Data::Content::Package& package)
{
    std::vector<TextAttribute*> references;
    for (const TextAttribute* reference :
         fileReferencesOf(static_cast<const Data::Content::Package&>(package)))
        references.push_back(const_cast<TextAttribute*>(reference)); // the package is not const
    return references;
}

void visitTexts(const Data::Content::Package& package,
                const std::function<void(const TextAttribute&)>& visit)
{
    Orv::Data::visitTree(static_cast<const Orv::Data::BaseObject&>(package),
                         [&](const Orv::Data::BaseObject& object) {
                             if (const TextAttribute* text = asText(object))
                                 visit(*text);
                         });
}

void visitTexts(Data::Content::Package& package, const std::function<void(TextAttribute&)>& visit)
{
    Orv::Data::visitTree(
        static_cast<Orv::Data::BaseObject&>(package), [&](Orv::Data::BaseObject& object) {
            if (const TextAttribute* text = asText(object))
                visit(const_cast<TextAttribute&>(*text)); // the package is not const
        });
}

} // namespace Ksx::Core
