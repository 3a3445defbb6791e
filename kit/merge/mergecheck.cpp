#include "merge/mergecheck.h"

#include "contentcheck.h"
#include "core/fileplace.h"
#include "data/content/package.h"
#include "data/filename.h"
#include "findinglist.h"
#include "packageparts.h"
#include "referencecheck.h"
#include <set>
#include <tuple>

namespace Ksx::Kit {

namespace {

namespace Doc = Data::Content;
using Fault = std::tuple<FindingCode, QString, QString>;

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
    FindingList findings;
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
    std::set<Fault> known;
    for (Doc::Package* const side : {&ours, &theirs})
        for (const Finding& one : errorsOf(*side, place, presetsPaths))
            known.emplace(one.code, one.place, one.text);
    std::vector<Conflict> conflicts;
    for (const Finding& one : found) {
        if (known.count({one.code, one.place, one.text}) == 1)
            continue;
        Conflict& conflict = conflicts.emplace_back();
        conflict.place = one.place;
        conflict.object = QStringLiteral("package");
        conflict.reason = QStringLiteral("The merged package would have a fault: ") + one.text;
    }
    return conflicts;
}

} // namespace Ksx::Kit
