#include "merge/mergecheck.h"

#include "contentcheck.h"
#include "core/fileplace.h"
#include "data/content/package.h"
#include "data/filename.h"
#include "findinglist.h"
#include "packageparts.h"
#include "referencecheck.h"
#include <map>
#include <set>
#include <tuple>
#include <utility>

namespace Ksx::Kit {

namespace {

namespace Doc = Data::Content;
using Fault = std::tuple<FindingCode, QString, QString>; // with its text and its place

// Faults that a package has already are told apart from new ones, which their counts cannot do.
constexpr std::size_t MaximumOfAKind = 100000;

Fault faultOf(const Finding& finding)
{
    return {finding.code, finding.text, finding.place};
}

std::vector<Finding> errorsOf(Doc::Package& package, const QString& place,
                              const QStringList& presetsPaths)
{
    PackageHead head;
    for (const Doc::Dependency& dependency : package.dependencies())
        head.dependencies.push_back(
            {Orv::fromBytes(dependency.filename().get()), QString::number(dependency.uid().get())});
    std::vector<Dependency> dependencies = dependenciesOf(package, head, place);
    for (Dependency& dependency : dependencies)
        if (dependency.way == DependencyWay::Presets) {
            dependency.path = pathOfReference(dependency.path, presetsPaths);
            dependency.isFound = Orv::Core::exists(dependency.path);
        }
    FindingList findings(MaximumOfAKind);
    checkContent(package, findings);
    checkReferences(package, dependencies, presetsPaths, findings);
    std::vector<Finding> errors = findings.take();
    errors.erase(
        std::remove_if(errors.begin(), errors.end(),
                       [](const Finding& one) { return one.kind().severity != Severity::Error; }),
        errors.end());
    return errors;
}

} // namespace

std::vector<Conflict> newFaults(Doc::Package& merged, Doc::Package& ours, Doc::Package& theirs,
                                const QString& place, const QStringList& presetsPaths)
{
    const std::vector<Finding> found = errorsOf(merged, place, presetsPaths);
    if (found.empty())
        return {};
    std::set<Fault> left;
    for (const Finding& one : found)
        left.insert(faultOf(one));
    std::set<Fault> known;
    for (Doc::Package* const side : {&ours, &theirs})
        for (const Finding& one : errorsOf(*side, place, presetsPaths))
            known.insert(faultOf(one));
    // The other side may have renamed or moved the object that has the error.
    std::map<std::pair<FindingCode, QString>, std::size_t> elsewhere;
    for (const auto& [code, text, where] : known)
        if (left.count({code, text, where}) == 0)
            ++elsewhere[{code, text}];
    std::vector<Conflict> conflicts;
    for (const Finding& one : found) {
        if (known.count(faultOf(one)) == 1)
            continue;
        const auto moved = elsewhere.find({one.code, one.text});
        if (moved != elsewhere.end() && moved->second > 0) {
            --moved->second;
            continue;
        }
        Conflict& conflict = conflicts.emplace_back();
        conflict.place = one.place;
        conflict.object = QStringLiteral("package");
        conflict.reason = QStringLiteral("The merged package would have a fault: ") + one.text;
    }
    return conflicts;
}

} // namespace Ksx::Kit
