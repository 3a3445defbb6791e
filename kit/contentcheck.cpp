#include "contentcheck.h"

#include "data/content/function.h"
#include "data/content/graph.h"
#include "data/content/group.h"
#include "data/content/package.h"
#include "data/content/resource.h"
#include "findinglist.h"
#include "graphcheck.h"
#include "packageparts.h"
#include "uniquenames.h"

namespace Ksx::Kit {

namespace {

namespace Doc = Data::Content;

// The names of an object of the content, as items of other lists have them.
struct NamedObject
{
    const Doc::ContentInterface* object;
    const auto& uid() const { return object->uidAttribute(); }
    const auto& identifier() const { return object->identifierAttribute(); }
};

void checkResource(const Doc::Resource& resource, const QString& place, FindingList& findings)
{
    const Resource one = resourceOf(resource);
    if (!one.isFound && one.source.isEmpty())
        findings.add(FindingCode::MissingResource, place,
                     QStringLiteral("There is no file %1").arg(one.path));
}

// Groups nest no deeper than a file may, which leaves room on the stack of a thread.
template <class Items>
void checkItems(const Items& items, const QString& outer, FindingList& findings)
{
    std::vector<NamedObject> objects;
    for (const Doc::ContentObjectBase& item : items)
        objects.push_back({dynamic_cast<const Doc::ContentInterface*>(&item)});
    checkUids(objects, outer, "objects", findings);
    checkIdentifiers(objects, outer, "objects", findings);
    for (const Doc::ContentObjectBase& item : items) {
        const NamedObject named{dynamic_cast<const Doc::ContentInterface*>(&item)};
        const QString place = placeIn(outer, latinText(named.identifier().get()));
        if (const auto* group = dynamic_cast<const Doc::Group*>(&item)) {
            checkItems(group->content(), place, findings);
        } else if (const auto* graph = dynamic_cast<const Doc::Graph*>(&item)) {
            checkGraph(*graph, place, findings);
            checkItems(graph->content(), place, findings);
        } else if (const auto* function = dynamic_cast<const Doc::Function*>(&item)) {
            checkFunction(*function, place, findings);
        } else if (const auto* resource = dynamic_cast<const Doc::Resource*>(&item)) {
            checkResource(*resource, place, findings);
        }
    }
}

} // namespace

void checkContent(const Doc::Package& package, FindingList& findings)
{
    checkItems(package.content(), QString(), findings);
}

} // namespace Ksx::Kit
