#include "ksx/core/objecturl.h"

#include "data/content/contentobjectbase.h"
#include "data/content/package.h"
#include "ksx/core/datapath.h"
#include "ksx/core/packageentrytable.h"
#include <vector>

namespace Ksx::Core {

namespace {

using Data::Content::ContentInterface;
using Data::Content::Dependency;
using Data::Content::Package;
using Orv::Data::BaseObject;

// The identifiers of the object and of the content that it stands in, the innermost first; the
// object above them all.
const BaseObject* ownersOf(const BaseObject& object, std::vector<const std::string*>& identifiers)
{
    const BaseObject* owner = &object;
    for (; owner->getParent() != nullptr && dynamic_cast<const Package*>(owner) == nullptr;
         owner = owner->getParent())
        if (const auto* content = dynamic_cast<const ContentInterface*>(owner))
            identifiers.push_back(&content->identifierAttribute().get());
    return owner;
}

bool namesItself(const Package& package, Uid uid)
{
    const Dependency* const dependency = findDependency(package, uid);
    return dependency != nullptr && dependency->filename().get() == Himself;
}

const Package* packageOf(const DataPath& path, const Package& from)
{
    const auto uid = path.dependency();
    if (!uid)
        return path.parameter(DataPathKey::Dependency) ? nullptr : &from;
    if (namesItself(from, *uid))
        return &from;
    PackageEntryTable* const table = PackageEntryTable::ofProcess();
    const PackageEntry* const entry = table == nullptr ? nullptr : table->findByUid(*uid);
    return entry == nullptr ? nullptr : entry->package.get();
}

} // namespace

std::string objectUrl(const BaseObject& object)
{
    std::vector<const std::string*> identifiers;
    const auto* package = dynamic_cast<const Package*>(ownersOf(object, identifiers));
    PackageEntryTable* const table = PackageEntryTable::ofProcess();
    const PackageEntry* const entry =
        package == nullptr || table == nullptr ? nullptr : table->findByPackage(*package);
    if (entry == nullptr)
        return {};
    std::string url = "pkg://";
    for (std::size_t i = identifiers.size(); i > 0; --i)
        url += *identifiers[i - 1] + (i > 1 ? "/" : "");
    return DataPath::withParameter(url, DataPathKey::Dependency, std::to_string(entry->uid));
}

const BaseObject* resolveObjectUrl(std::string_view url, const Package& from)
{
    if (!DataPath::isDataPath(url))
        return nullptr;
    const DataPath path(url);
    const Package* const package = packageOf(path, from);
    return package == nullptr ? nullptr : path.resolve(*package);
}

} // namespace Ksx::Core
