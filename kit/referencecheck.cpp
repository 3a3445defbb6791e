#include "referencecheck.h"

#include "contentindex.h"
#include "contentplace.h"
#include "cycle.h"
#include "data/content/function.h"
#include "data/content/graph.h"
#include "data/content/package.h"
#include "findinglist.h"
#include "ksx/core/datapath.h"
#include "ksx/core/filereferences.h"
#include "packageparts.h"
#include "uniquenames.h"
#include <optional>
#include <unordered_map>

namespace Ksx::Kit {

namespace {

namespace Doc = Data::Content;
using Core::DataPath;
using Orv::Data::BaseObject;

bool isUser(const BaseObject* object)
{
    return dynamic_cast<const Doc::Graph*>(object) != nullptr ||
           dynamic_cast<const Doc::Function*>(object) != nullptr;
}

// A dependency, and its package once a path leads into it.
struct Target
{
    const Dependency* dependency;
    bool isUsed = false;
    bool wasOpened = false;
    std::unique_ptr<Doc::Package> package = nullptr; // null if it could not be opened
    std::optional<ContentIndex> index = std::nullopt;
};

// Goes through the paths of a package.
class ReferenceCheck
{
public:
    ReferenceCheck(Doc::Package& package, const std::vector<Dependency>& dependencies,
                   const QStringList& presetsPaths, FindingList& findings)
        : m_package(package), m_presetsPaths(presetsPaths), m_findings(findings), m_own(package)
    {
        std::size_t next = 0;
        for (const Doc::Dependency& dependency : package.dependencies())
            m_targets.try_emplace(
                dependency.uid().get(),
                Target{next < dependencies.size() ? &dependencies[next++] : nullptr});
    }

    void run()
    {
        checkUids(m_package.dependencies(), QString(), "dependencies", m_findings);
        Core::visitTexts(m_package, [this](Core::TextAttribute& text) {
            if (DataPath::isDataPath(text.get()))
                check(text);
        });
        for (const std::size_t vertex : cyclesIn(m_uses))
            m_findings.add(FindingCode::GraphCycle, placeOf(m_users[vertex]),
                           QStringLiteral("It is an instance of itself, by others or at once"));
        for (auto& [uid, target] : m_targets)
            checkTarget(target);
    }

private:
    void add(FindingCode code, const BaseObject& object, const QString& text)
    {
        m_findings.add(code, m_findings.isFull(code) ? QString() : placeOf(&object), text);
    }

    void check(const Core::TextAttribute& text)
    {
        const DataPath path(text.get());
        const auto uid = path.dependency();
        const auto target = uid ? m_targets.find(*uid) : m_targets.end();
        if (uid && target == m_targets.end()) {
            add(FindingCode::UnknownDependency, text,
                QStringLiteral("No dependency has the uid of %1").arg(latinText(text.get())));
            return;
        }
        const ContentIndex* const index = uid ? indexOf(target->second) : &m_own;
        if (index != nullptr && !index->leadsSomewhere(path))
            add(FindingCode::DanglingPath, text,
                QStringLiteral("Nothing is at %1").arg(latinText(text.get())));
        if (index == &m_own)
            addUse(text, path);
    }

    // Returns null for a package that cannot be opened, which is a finding of its own.
    const ContentIndex* indexOf(Target& target)
    {
        target.isUsed = true;
        if (target.dependency == nullptr || target.dependency->way == DependencyWay::Itself)
            return &m_own;
        if (!target.wasOpened && target.dependency->isFound) {
            QStringList updates;
            QString reason;
            target.package = openPackage(target.dependency->path, m_presetsPaths, updates, reason);
            if (target.package != nullptr)
                target.index.emplace(*target.package);
            else
                m_findings.add(FindingCode::UnreadableDependency, QString(),
                               QStringLiteral("The dependency %1 cannot be opened: %2")
                                   .arg(target.dependency->named.filename, reason));
        }
        target.wasOpened = true;
        return target.index ? &*target.index : nullptr;
    }

    // Instances have paths to graphs and functions, and no paths to objects inside of them.
    void addUse(const Core::TextAttribute& text, const DataPath& path)
    {
        const BaseObject* const user = contentObjectOf(&text);
        const BaseObject* const used = m_own.objectOf(path);
        if (isUser(user) && isUser(used) && !path.parameter(Core::DataPathKey::Type)) {
            const std::size_t from = numberOf(user);
            const std::size_t to = numberOf(used);
            m_uses[from].push_back(to);
        }
    }

    std::size_t numberOf(const BaseObject* object)
    {
        const auto [place, isNew] = m_numbers.try_emplace(object, m_users.size());
        if (isNew) {
            m_users.push_back(object);
            m_uses.emplace_back();
        }
        return place->second;
    }

    void checkTarget(const Target& target)
    {
        if (target.dependency == nullptr || target.dependency->way == DependencyWay::Itself)
            return;
        const QString name = target.dependency->named.filename;
        if (!target.dependency->isFound)
            m_findings.add(FindingCode::MissingDependency, QString(),
                           QStringLiteral("There is no file %1 for the dependency %2")
                               .arg(target.dependency->path, name));
        // Old packages have paths without dependencies.
        if (!target.isUsed && !target.dependency->named.uid.isEmpty())
            m_findings.add(FindingCode::UnusedDependency, QString(),
                           QStringLiteral("No path uses the dependency %1").arg(name));
    }

    Doc::Package& m_package;
    const QStringList& m_presetsPaths;
    FindingList& m_findings;
    const ContentIndex m_own;
    std::map<unsigned, Target> m_targets; // by the uid of the dependency
    // Graphs and functions. m_uses has the numbers of the ones that each has instances of.
    std::vector<const BaseObject*> m_users;
    std::unordered_map<const BaseObject*, std::size_t> m_numbers;
    Edges m_uses;
};

} // namespace

void checkReferences(Doc::Package& package, const std::vector<Dependency>& dependencies,
                     const QStringList& presetsPaths, FindingList& findings)
{
    ReferenceCheck(package, dependencies, presetsPaths, findings).run();
}

} // namespace Ksx::Kit
