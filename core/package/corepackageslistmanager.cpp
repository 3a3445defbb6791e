#include "ksx/core/packageslistmanager.h"

#include "core/commandmodification.h"
#include "core/icommandmanager.h"
#include "core/ilibraryservices.h"
#include "data/content/package.h"
#include "data/content/packagemanipulators.h"
#include "data/content/packageslist.h"
#include "data/diagnosticlog.h"
#include "data/filename.h"
#include "data/latin1.h"
#include "ksx/core/datapath.h"
#include "ksx/core/filereferences.h"
#include "ksx/core/plainroute.h"
#include <QCoreApplication>
#include <QDir>
#include <QHash>
#include <QSet>
#include <QUuid>
#include <map>
#include <unordered_map>
#include <unordered_set>

namespace Ksx::Core {

namespace {

using namespace Data::Content;
using Orv::Core::ManipulatorContext;
using Orv::Core::ManipulatorStruct;
using Orv::Data::DataPointerBoxMasterKey;

// The packages of one command. Shared, since a payload is copied and the packages are not.
struct AddPackagesStruct
{
    std::shared_ptr<std::vector<std::unique_ptr<Package>>> packages;
};

using Boxes = std::vector<PackagesListManager::PackageBox>;

struct MovePackageStruct
{
    PackagesListManager::PackageBox package;
    std::ptrdiff_t offset;
};

bool applyAdd(ManipulatorStruct<PackagesList> list, const DataPointerBoxMasterKey&,
              const AddPackagesStruct& added)
{
    std::vector<std::unique_ptr<Orv::Data::BaseObject>> items;
    for (auto& package : *added.packages)
        items.push_back(std::move(package));
    const std::size_t size = list.get()->content().size();
    list.content().insert(size, std::move(items));
    return true;
}

bool applyRemove(ManipulatorStruct<PackagesList> list, const DataPointerBoxMasterKey&,
                 const Boxes& removed)
{
    return std::all_of(removed.begin(), removed.end(),
                       [&list](const auto& package) { return list.content().erase(package); });
}

bool applyMove(ManipulatorStruct<PackagesList> list, const DataPointerBoxMasterKey&,
               const MovePackageStruct& moved)
{
    const auto& content = list.get()->content();
    const auto size = static_cast<std::ptrdiff_t>(content.size());
    const auto index =
        moved.package ? static_cast<std::ptrdiff_t>(content.indexOf(*moved.package)) : size;
    if (index == size || moved.offset < -index || moved.offset >= size - index)
        return false;
    list.content().move(static_cast<std::size_t>(index), moved.offset);
    return true;
}

bool applyRemoveDependency(ManipulatorStruct<Package> package, const DataPointerBoxMasterKey&,
                           const Orv::Data::DataPointerBox<Dependency>& removed)
{
    return package.dependencies().erase(removed);
}

// Through the process's command manager, directly without one.
bool execute(std::unique_ptr<Orv::Core::DataModificationBase> modification)
{
    const auto command =
        std::make_shared<Orv::Core::CommandModification>(std::move(modification), QString());
    const auto manager = Orv::Core::commandManager();
    return manager != nullptr ? manager->execute(command) : command->execute();
}

// The uids by which the packages of one load name each other, collected when they are needed first.
class NamedUids
{
public:
    explicit NamedUids(const std::list<PackagesListManager::DependencyEntry>& loaded)
        : m_loaded(loaded)
    {}

    // True for the uid of any dependency element, also of one that nobody followed.
    bool contains(Uid uid)
    {
        collect();
        return m_uids.count(uid) != 0;
    }
    // The first uid that an element has for the file. NoUid if there is none.
    Uid ofFile(const QString& filename)
    {
        collect();
        return m_byFile.value(filename, NoUid);
    }

private:
    void collect();

    const std::list<PackagesListManager::DependencyEntry>& m_loaded;
    bool m_isCollected = false;
    std::unordered_set<Uid> m_uids;
    QHash<QString, Uid> m_byFile;
};

void NamedUids::collect()
{
    if (m_isCollected)
        return;
    m_isCollected = true;
    std::unordered_set<const Package*> packages;
    for (const PackagesListManager::DependencyEntry& entry : m_loaded) {
        const auto uid = static_cast<Uid>(entry.uid);
        if (uid != NoUid && !m_byFile.contains(entry.filename))
            m_byFile.insert(entry.filename, uid);
        if (!entry.package || !packages.insert(entry.package.get()).second)
            continue;
        for (const Dependency& dependency : entry.package->dependencies())
            m_uids.insert(dependency.uid().get());
    }
}

void trace(const QString& text)
{
    Orv::DiagnosticLog::write(Orv::LogLevel::Inconsistency, "core\\corepackageslistmanager",
                              __LINE__, Orv::toBytes(text));
}

} // namespace

PackagesListManager::PackagesListManager() : m_document(std::make_unique<PackagesList>())
{
    editPlainly([this](ManipulatorContext& context) {
        context.addListener(m_document->content(), m_table);
        return true;
    });
}

PackagesListManager::~PackagesListManager() = default;

bool PackagesListManager::addPackages(std::vector<std::unique_ptr<Package>> packages)
{
    const Orv::Data::DataPointerBox<PackagesList> list(m_document.get());
    AddPackagesStruct added{
        std::make_shared<std::vector<std::unique_ptr<Package>>>(std::move(packages))};
    return execute(Orv::Core::makeModification(list, std::move(added), &applyAdd));
}

bool PackagesListManager::removePackages(const std::vector<PackageBox>& packages)
{
    const Orv::Data::DataPointerBox<PackagesList> list(m_document.get());
    return execute(Orv::Core::makeModification(list, packages, &applyRemove));
}

bool PackagesListManager::movePackage(const PackageBox& package, std::ptrdiff_t offset)
{
    const Orv::Data::DataPointerBox<PackagesList> list(m_document.get());
    return execute(
        Orv::Core::makeModification(list, MovePackageStruct{package, offset}, &applyMove));
}

bool PackagesListManager::removeDependency(Package& package, const Dependency& dependency)
{
    const Orv::Data::DataPointerBox<Dependency> removed(&dependency);
    if (Orv::Data::isAttached(package)) {
        const PackageBox box(&package);
        return execute(Orv::Core::makeModification(box, removed, &applyRemoveDependency));
    }
    return editPlainly([&](ManipulatorContext& context) {
        return ManipulatorStruct<Package>(package, context).dependencies().erase(&dependency);
    });
}

std::vector<PackagesListManager::PackageBox> PackagesListManager::openPackages() const
{
    std::vector<PackageBox> packages;
    for (const Package& package : m_document->content())
        packages.emplace_back(&package);
    return packages;
}

QString PackagesListManager::filePath(const Package& package)
{
    const PackageEntry* entry = m_table.findByPackage(package);
    return entry == nullptr ? QString() : entry->path;
}

PackagesListManager::PackageBox PackagesListManager::packageForPath(const QString& path)
{
    const PackageEntry* entry = m_table.findByPath(path);
    const bool isOpen = entry != nullptr && entry->package && isAttached(*entry->package);
    return isOpen ? entry->package : PackageBox();
}

std::unique_ptr<Package> PackagesListManager::newPackage(const QString& identifier)
{
    const QString name = identifier.isEmpty()
                             ? QCoreApplication::translate("Ksx::Data::Desc::Packages",
                                                           "DEFAULT_NEW_PACKAGE_IDENTIFIER")
                             : identifier;
    auto package = std::make_unique<Package>();
    package->identifier().assign(Orv::toLatin1(name));
    package->fileUID().assign(UidSource::uuid().toString().toStdString());
    return package;
}

PackagesListManager::PackageBox PackagesListManager::keep(std::unique_ptr<Package> package)
{
    Q_ASSERT(package != nullptr);
    PackageBox box(package.get());
    m_kept.emplace(package.get(), std::move(package));
    return box;
}

std::unique_ptr<Package> PackagesListManager::release(const Package& package)
{
    const auto place = m_kept.find(&package);
    if (place == m_kept.end())
        return nullptr;
    auto released = std::move(place->second);
    m_kept.erase(place);
    return released;
}

std::list<PackagesListManager::DependencyEntry>
PackagesListManager::dependenciesOf(const DependencyEntry& entry)
{
    std::list<DependencyEntry> yielded;
    if (!entry.package)
        return yielded;
    QSet<QString> names;
    std::vector<const Dependency*> removed;
    for (const Dependency& dependency : entry.package->dependencies()) {
        DependencyEntry wanted;
        wanted.uid = static_cast<std::int32_t>(dependency.uid().get());
        wanted.filename = Orv::fromBytes(dependency.filename().get());
        wanted.owner = entry.package;
        wanted.element.reset(&dependency);
        if (dependency.filename().get() == Himself) {
            wanted.filename = entry.filename;
            wanted.package = entry.package;
        } else if (wanted.filename.isEmpty()) {
            if (const PackageEntry* known = m_table.findByUid(dependency.uid().get())) {
                wanted.filename = known->path;
                wanted.package = known->package;
            }
        } else if (QDir::cleanPath(wanted.filename) == entry.filename) {
            trace(QStringLiteral("Removed bad himself dependency '%1'\n").arg(wanted.filename));
            removed.push_back(&dependency);
            continue;
        } else {
            if (names.contains(wanted.filename)) {
                trace(QStringLiteral("Removed multi dependency '%1'\n").arg(wanted.filename));
                removed.push_back(&dependency);
                continue;
            }
            wanted.package = packageForPath(wanted.filename);
        }
        names.insert(wanted.filename);
        yielded.push_back(wanted);
    }
    for (const Dependency* dependency : removed)
        removeDependency(const_cast<Package&>(*entry.package), *dependency);
    return yielded;
}

// The uids to change, by the package whose elements and paths name them. All pairs of an owner are
// applied in one pass, so that a uid which is both old and new is not moved twice.
struct PackagesListManager::Rewrites
{
    struct OfOwner
    {
        std::vector<std::pair<Orv::Data::DataPointerBox<Dependency>, Uid>> elements;
        std::unordered_map<Uid, Uid> uids; // of data paths; the first pair of an old uid holds
        Uid own = NoUid;                   // by which the package names itself, if it does
    };
    std::map<const Package*, OfOwner> owners;

    void add(const DependencyEntry& entry, Uid newUid)
    {
        if (!entry.owner)
            return;
        const auto oldUid = static_cast<Uid>(entry.uid);
        OfOwner& owner = owners[entry.owner.get()];
        // A uid that stays is a pair as well: its paths do not go along with a second element that
        // has the same uid and loses it.
        owner.uids.emplace(oldUid, newUid);
        if (oldUid != newUid)
            owner.elements.emplace_back(entry.element, newUid);
        if (entry.element && entry.element->filename().get() == Himself)
            owner.own = newUid;
    }
    void apply() const
    {
        for (const auto& [package, rewrite] : owners) {
            if (rewrite.elements.empty())
                continue;
            for (const auto& [element, uid] : rewrite.elements)
                if (element)
                    const_cast<Dependency&>(*element).uid().assign(uid);
            if (rewrite.own != NoUid)
                nameItself(*package, rewrite.own);
            visitTexts(const_cast<Package&>(*package),
                       [&uids = rewrite.uids](TextAttribute& text) { rewriteText(text, uids); });
        }
    }
    // Sets the uid of all elements "?himself". Of equal elements only the first is an entry.
    static void nameItself(const Package& package, Uid uid)
    {
        for (const Dependency& dependency : package.dependencies())
            if (dependency.filename().get() == Himself)
                const_cast<Dependency&>(dependency).uid().assign(uid);
    }
    static void rewriteText(TextAttribute& text, const std::unordered_map<Uid, Uid>& uids)
    {
        if (!DataPath::isDataPath(text.get()))
            return;
        const auto dependency = DataPath(text.get()).dependency();
        const auto pair = dependency ? uids.find(*dependency) : uids.end();
        if (pair != uids.end() && pair->second != pair->first)
            text.assign(DataPath::withParameter(text.get(), DataPathKey::Dependency,
                                                std::to_string(pair->second)));
    }
};

// The uids of one load: each file gets one, by which the table knows its package from then on.
class PackagesListManager::Settling
{
public:
    Settling(PackageEntryTable& table, const std::list<DependencyEntry>& loaded)
        : m_table(table), m_named(loaded)
    {}

    PackageEntry& entryFor(const DependencyEntry& entry)
    {
        if (entry.filename.isEmpty()) { // a package that has never been saved
            PackageEntry* const open =
                entry.package ? m_table.findByPackage(*entry.package) : nullptr;
            return open != nullptr ? *open : m_table.add(uidFor(entry), {}, nullptr);
        }
        PackageEntry*& known = m_byFile[entry.filename];
        if (known == nullptr)
            known = m_table.findByPath(entry.filename);
        if (known == nullptr)
            known = &m_table.add(uidFor(entry), entry.filename, nullptr);
        return *known;
    }

private:
    // Files tell the uids, where they can, so that a package that is saved again has the same
    // bytes. The clock tells the others.
    Uid uidFor(const DependencyEntry& entry)
    {
        const auto wanted = static_cast<Uid>(entry.uid);
        if (isFree(wanted))
            return wanted;
        const Uid own = entry.package ? ownUid(*entry.package) : NoUid;
        if (isFree(own))
            return own;
        const Uid named = m_named.ofFile(entry.filename);
        if (isFree(named))
            return named;
        return UidSource::shared().next(
            [this](Uid uid) { return m_table.findByUid(uid) != nullptr || m_named.contains(uid); });
    }
    bool isFree(Uid uid) { return uid != NoUid && m_table.findByUid(uid) == nullptr; }

    PackageEntryTable& m_table;
    NamedUids m_named;
    QHash<QString, PackageEntry*> m_byFile; // of this load
};

// Elements that spell one file name in several ways are written alike, and a file with two such
// elements would lose the second one when it is opened. Here all paths go by the first one's uid
// already.
void PackagesListManager::dropOtherSpellings(Package& package)
{
    QHash<QString, Uid> known;
    std::vector<const Dependency*> removed;
    for (const Dependency& dependency : package.dependencies()) {
        const std::string& name = dependency.filename().get();
        const Uid uid = dependency.uid().get();
        if (name.empty() || name == Himself)
            continue;
        const QString cleaned = QDir::cleanPath(Orv::fromBytes(name));
        if (known.contains(cleaned) && known.value(cleaned) == uid)
            removed.push_back(&dependency);
        else
            known.insert(cleaned, uid);
    }
    for (const Dependency* dependency : removed)
        removeDependency(package, *dependency);
}

bool PackagesListManager::finishLoading(const std::list<DependencyEntry>& loaded)
{
    Settling settling(m_table, loaded);
    Rewrites rewrites;
    std::vector<std::unique_ptr<Package>> added;
    for (const DependencyEntry& entry : loaded) {
        PackageEntry& known = settling.entryFor(entry);
        if (entry.package) {
            // A package that is neither attached nor collected yet is still kept here.
            if (auto package = release(*entry.package)) {
                m_table.setPackage(known, *entry.package);
                added.push_back(std::move(package));
            }
        }
        rewrites.add(entry, known.uid);
    }
    rewrites.apply();
    for (const auto& package : added)
        dropOtherSpellings(*package);
    return addPackages(std::move(added));
}

} // namespace Ksx::Core
