#include "updating/packageupdater6141.h"

#include "data/content/package.h"
#include "data/filename.h"
#include "ksx/core/contentwalk.h"
#include "ksx/core/datapath.h"
#include "ksx/core/filereferences.h"
#include "ksx/core/uidsource.h"
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace Ksx::Core {

namespace {

using namespace Data::Content;
using Orv::Core::MessageLevel;
using Orv::Data::BaseObject;

// The objects of a package by their place, so that many paths into one large list take no time in
// its length. Holds texts of the package, which must not change meanwhile.
class ContentIndex
{
public:
    explicit ContentIndex(const Package& package) : m_package(package)
    {
        // The object's parent is the list, whose parent is the owner. The first one of a name wins.
        visitContent(package, [this](const ContentObjectBase& object) {
            const auto& named = dynamic_cast<const ContentInterface&>(object);
            m_objects.emplace(
                Key{object.getParent()->getParent(), named.identifierAttribute().get()}, &object);
        });
    }

    bool resolves(std::string_view text) const
    {
        const DataPath path(text);
        const BaseObject* object = &m_package;
        for (const std::string& segment : path.segments()) {
            const auto found = m_objects.find(Key{object, segment});
            if (found == m_objects.end())
                return false;
            object = found->second;
        }
        const bool hasParameters = text.find('?') != std::string_view::npos;
        return !hasParameters || path.resolve(m_package) != nullptr;
    }

private:
    using Key = std::pair<const BaseObject*, std::string_view>;
    struct Hash
    {
        std::size_t operator()(const Key& key) const
        {
            return std::hash<const BaseObject*>()(key.first) * 31 +
                   std::hash<std::string_view>()(key.second);
        }
    };

    const Package& m_package;
    std::unordered_map<Key, const BaseObject*, Hash> m_objects;
};

std::vector<TextAttribute*> pathsWithoutDependency(Package& package)
{
    const ContentIndex index(package);
    std::vector<TextAttribute*> paths;
    visitTexts(package, [&](TextAttribute& attribute) {
        const std::string& text = attribute.get();
        if (DataPath::isDataPath(text) &&
            !DataPath(text).parameter(DataPathKey::Dependency).has_value() && index.resolves(text))
            paths.push_back(&attribute);
    });
    return paths;
}

void addDependencyOnItself(Package& package, Uid uid)
{
    auto dependency = std::make_unique<Dependency>();
    dependency->filename().assign("?himself");
    dependency->uid().assign(uid);
    dependency->type().assign("package");
    package.dependencies().pushBack(std::move(dependency));
}

} // namespace

// Before build 6141 dependencies had no uid, and paths into the package itself named none.
//   <dependencies><dependency><filename v="a.obl"/>...</dependency></dependencies>
//   ... <path><value v="pkg://Wood/grain"/></path>
// becomes
//   <dependencies><dependency><filename v="a.obl"/><uid v="17"/>...</dependency>
//     <dependency><filename v="?himself"/><uid v="18"/>...</dependency></dependencies>
//   ... <path><value v="pkg://Wood/grain?dependency=18"/></path>
// Every dependency gets a new uid, so a path that already names one goes stale; files of that time
// have none. Without a path into itself a package gets no dependency on itself.
bool PackageUpdater6141::update(Package& package, Orv::Core::MessageNode* log,
                                const Orv::Core::Extensions::ProgressFunction& /*progress*/) const
{
    std::unordered_set<Uid> uids;
    const auto newUid = [&uids] {
        const Uid uid = UidSource::ofUpdater().next(
            [&uids](Uid candidate) { return uids.count(candidate) != 0; });
        uids.insert(uid);
        return uid;
    };

    auto& dependencies = package.dependencies();
    for (std::size_t i = 0; i < dependencies.size(); ++i) {
        Dependency& dependency = dependencies.at(i);
        dependency.uid().assign(newUid());
        addMessage(log, MessageLevel::Information,
                   text("COUNT_%1_GENERATE_UID_FOR_%2")
                       .arg(QString::number(i), Orv::fromBytes(dependency.filename().get())));
    }

    const Uid ownUid = newUid();
    const std::vector<TextAttribute*> paths = pathsWithoutDependency(package);
    for (TextAttribute* path : paths)
        path->assign(
            DataPath::withParameter(path->get(), DataPathKey::Dependency, std::to_string(ownUid)));
    if (!paths.empty())
        addDependencyOnItself(package, ownUid);
    return true;
}

} // namespace Ksx::Core
