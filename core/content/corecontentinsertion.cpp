#include "ksx/core/contentinsertion.h"

#include "content/contentuids.h"
#include "content/uniqueidentifier.h"
#include "core/manipulatorlist.h"
#include "core/manipulatorstruct.h"
#include "data/content/function.h"
#include "data/content/graph.h"
#include "data/content/group.h"
#include "data/content/package.h"
#include "data/content/resource.h"
#include "ksx/core/contentwalk.h"
#include <algorithm>
#include <unordered_set>
#include <vector>

namespace Ksx::Core {

namespace {

using namespace Data::Content;
using Orv::Core::ManipulatorList;
using Orv::Data::BaseObject;

const Package* packageOf(const BaseObject& object)
{
    const BaseObject* owner = &object;
    while (owner != nullptr && dynamic_cast<const Package*>(owner) == nullptr)
        owner = owner->getParent();
    return static_cast<const Package*>(owner);
}

// The object is new, so that nothing has to be recorded.
template <class T>
bool name(ContentObjectBase& object, Uid uid, const BaseObject& container)
{
    auto* const named = dynamic_cast<T*>(&object);
    if (named == nullptr)
        return false;
    named->uid().assign(uid);
    named->identifier().assign(uniqueIdentifier(container, named->identifier().get()));
    return true;
}

} // namespace

Uid newContentUid(const Package& package)
{
    if (const ContentUids* known = ContentUids::of(package))
        return UidSource::shared().next([known](Uid uid) { return known->contains(uid); });
    std::unordered_set<Uid> taken;
    visitContent(package, [&](const ContentObjectBase& object) {
        if (const auto* content = dynamic_cast<const ContentInterface*>(&object))
            taken.insert(content->uidAttribute().get());
    });
    return UidSource::shared().next([&](Uid uid) { return taken.count(uid) != 0; });
}

const ContentObjectBase* insertContent(const BaseObject& container,
                                       Orv::Core::ManipulatorContext& context,
                                       std::unique_ptr<ContentObjectBase> object,
                                       std::uint32_t index)
{
    const auto* content = contentOf(container);
    const Package* const package = packageOf(container);
    if (content == nullptr || package == nullptr)
        return nullptr;
    const Uid uid = newContentUid(*package);
    ContentObjectBase& inserted = *object;
    name<Graph>(inserted, uid, container) || name<Resource>(inserted, uid, container) ||
        name<Function>(inserted, uid, container) || name<Group>(inserted, uid, container);
    std::vector<std::unique_ptr<BaseObject>> items;
    items.push_back(std::move(object));
    ManipulatorList<ContentObjectBase>(*content, context)
        .insert(std::min<std::size_t>(index, content->size()), std::move(items));
    return &inserted;
}

} // namespace Ksx::Core
