#include "behavior/retrievedependency.h"

#include "content/packageof.h"
#include "core/manipulatorcontext.h"
#include "data/content/package.h"
#include "data/content/packagemanipulators.h"
#include "data/datamessage.h"
#include "data/filename.h"
#include "ksx/core/datapath.h"
#include "ksx/core/edit.h"
#include "ksx/core/packageentrytable.h"
#include <algorithm>
#include <charconv>

namespace Ksx::Core::Behavior {

namespace {

using namespace Data::Content;
using Orv::Core::ManipulatorContext;
using Orv::Core::ManipulatorStruct;
using Orv::Data::BaseObject;

const char* const PackageType = "package";

std::optional<Uid> dependencyOf(std::string_view reference)
{
    return DataPath::isDataPath(reference) ? DataPath::dependencyOf(reference) : std::nullopt;
}

// Does that dependency of a package lead to another one? The table is asked first: it knows the
// package itself in most cases, and needs no walk.
bool leadsElsewhere(const Package& package, Uid uid, PackageEntryTable* table)
{
    const PackageEntry* const entry = table == nullptr ? nullptr : table->findByUid(uid);
    if (entry != nullptr && entry->package == &package)
        return false;
    const Dependency* const element = findDependency(package, uid);
    return element == nullptr ? entry != nullptr : element->filename().get() != Himself;
}

// The number that a text is, 0 if it is none.
unsigned numberOf(const std::string& text)
{
    unsigned number = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end ? number : 0;
}

std::unique_ptr<Dependency> makeElement(const PackageEntry& entry, const Package& owner)
{
    auto element = std::make_unique<Dependency>();
    element->uid().assign(entry.uid);
    element->type().assign(PackageType);
    if (entry.package == &owner) {
        element->filename().assign(Himself);
        return element;
    }
    element->filename().assign(Orv::toBytes(entry.path));
    if (entry.package) {
        element->fileUID().assign(numberOf(entry.package->fileUID().get()));
        element->versionUID().assign(entry.package->versionUID().get());
    }
    return element;
}

// Those that lead to other packages, ascending.
std::vector<Uid> usesOf(const Package& package, const RetrieveDependency::References& references)
{
    std::vector<Uid> uses;
    PackageEntryTable* table = nullptr;
    for (const std::string_view reference : references) {
        const auto uid = dependencyOf(reference);
        if (!uid)
            continue;
        table = table == nullptr ? PackageEntryTable::ofProcess() : table;
        if (leadsElsewhere(package, *uid, table))
            uses.push_back(*uid);
    }
    std::sort(uses.begin(), uses.end());
    uses.erase(std::unique(uses.begin(), uses.end()), uses.end());
    return uses;
}

} // namespace

struct RetrieveDependency::Uses
{
    Orv::Data::DataPointerBox<Package> package;
    std::vector<Uid> uids;
};

RetrieveDependency::RetrieveDependency(const DictionaryCallback& dictionary)
    : m_dictionary(dictionary)
{}

RetrieveDependency::~RetrieveDependency() = default;

std::optional<Uid> RetrieveDependency::retrieve(const BaseObject& object) const
{
    const Package* const package = packageOf(object);
    if (package == nullptr)
        return std::nullopt;
    PackageEntryTable* const table = PackageEntryTable::ofProcess();
    for (const std::string_view reference : referencesOf(object)) {
        const auto uid = dependencyOf(reference);
        if (uid && leadsElsewhere(*package, *uid, table))
            return uid;
    }
    return std::nullopt;
}

void RetrieveDependency::forget(const BaseObject& object)
{
    if (m_uses != nullptr && m_uses->package && m_dictionary)
        for (const Uid uid : m_uses->uids)
            m_dictionary(*m_uses->package, uid, object, false);
    m_uses.reset();
}

void RetrieveDependency::note(const BaseObject& object, const References& references)
{
    const Package* const package = references.empty() ? nullptr : packageOf(object);
    std::vector<Uid> uses = package == nullptr ? std::vector<Uid>() : usesOf(*package, references);
    if (m_uses != nullptr && m_uses->uids == uses && m_uses->package == package)
        return;
    forget(object);
    if (uses.empty())
        return;
    if (m_dictionary)
        for (const Uid uid : uses)
            m_dictionary(*package, uid, object, true);
    m_uses =
        std::make_unique<Uses>(Uses{Orv::Data::DataPointerBox<Package>(package), std::move(uses)});
}

void RetrieveDependency::makeElements(const BaseObject& object, const References& references,
                                      ManipulatorContext& context)
{
    const Package* const package = packageOf(object);
    PackageEntryTable* const table = PackageEntryTable::ofProcess();
    if (package == nullptr || table == nullptr)
        return;
    for (const std::string_view reference : references) {
        const auto uid = dependencyOf(reference);
        if (!uid || findDependency(*package, *uid) != nullptr)
            continue;
        if (const PackageEntry* entry = table->findByUid(*uid))
            ManipulatorStruct<Package>(*package, context)
                .dependencies()
                .pushBack(makeElement(*entry, *package));
    }
}

void RetrieveDependency::deliver(const Orv::Data::DataMessage& message)
{
    const BaseObject* const object = message.object.get();
    if (object == nullptr)
        return;
    if (message.type == Orv::Data::ChangeType::Removed) {
        forget(*object);
        return;
    }
    const References references = referencesOf(*object);
    if (ManipulatorContext* context = editableContext(message))
        makeElements(*object, references, *context);
    note(*object, references);
}

} // namespace Ksx::Core::Behavior
