#include "ksx/core/filereferences.h"

#include "data/content/package.h"
#include "data/treewalk.h"

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
