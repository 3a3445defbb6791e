#include "ksx/core/filereferences.h"

#include "data/content/package.h"
#include "data/treewalk.h"

namespace Ksx::Core {

namespace {

// Asks for the kind first: most objects are told by it, and a cast costs more.
TextAttribute* asText(Orv::Data::BaseObject& object)
{
    return object.kind() == Orv::Data::ObjectKind::Attribute ? dynamic_cast<TextAttribute*>(&object)
                                                             : nullptr;
}

} // namespace

std::vector<TextAttribute*> fileReferencesOf(Data::Content::Package& package)
{
    std::vector<TextAttribute*> references;
    Orv::Data::visitTree(static_cast<Orv::Data::BaseObject&>(package),
                         [&](Orv::Data::BaseObject& object) {
                             const auto flags = object.getMeta().valueFlags;
                             if ((flags & Orv::Data::ValueFlag::FilePath) == 0)
                                 return;
                             if (TextAttribute* text = asText(object))
                                 references.push_back(text);
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
