#include "ksx/kit/inventory.h"

#include "core/fileplace.h"
#include "data/content/compnode.h"
#include "data/content/function.h"
#include "data/content/graph.h"
#include "data/content/group.h"
#include "data/content/package.h"
#include "data/content/resource.h"
#include "data/desc/valuetype.h"
#include "data/treewalk.h"
#include "openedpackage.h"
#include "packageparts.h"

namespace Ksx::Kit {

namespace {

namespace Doc = Data::Content;
namespace ValueType = Data::Desc::ValueType;

template <class Inputs>
std::vector<Input> inputsOf(const Inputs& inputs)
{
    std::vector<Input> all;
    for (const Doc::ParamInput& input : inputs)
        all.push_back(inputOf(input));
    return all;
}

std::vector<Output> outputsOf(const Doc::GraphOutputsList& outputs)
{
    std::vector<Output> all;
    for (const Doc::GraphOutput& output : outputs) {
        Output& one = all.emplace_back();
        one.identifier = latinText(output.identifier().get());
        one.uid = output.uid().get();
        one.label = latinText(output.attributes().label().get());
        for (const Doc::Usage& usage : output.usages())
            one.usages.push_back(
                {latinText(usage.name().get()), latinText(usage.components().get())});
        one.isDisabled = output.disabled().value().get();
    }
    return all;
}

Function functionOf(const Doc::Function& function)
{
    return {latinText(function.identifier().get()), function.uid().get(),
            latinText(function.attributes().label().get()), function.type().value().get(),
            inputsOf(function.paraminputs())};
}

// Groups nest no deeper than a file may, which leaves room on the stack of a thread.
template <class Items>
void addContent(const Items& items, Content& content);

Graph graphOf(const Doc::Graph& graph)
{
    Graph one;
    one.identifier = latinText(graph.identifier().get());
    one.uid = graph.uid().get();
    one.label = latinText(graph.attributes().label().get());
    one.description = latinText(graph.attributes().description().get());
    one.inputs = inputsOf(graph.paraminputs());
    one.outputs = outputsOf(graph.graphOutputs());
    one.nodeCount = graph.compNodes().size();
    for (const Doc::CompNode& node : graph.compNodes())
        for (const Doc::Connexion& connexion : node.connexions())
            one.connectionCount += connexion.connRef().isModified() ? 1 : 0;
    addContent(graph.content(), one.content);
    return one;
}

template <class Items>
void addContent(const Items& items, Content& content)
{
    for (const Doc::ContentObjectBase& item : items) {
        if (const auto* group = dynamic_cast<const Doc::Group*>(&item)) {
            content.groups.push_back(
                {latinText(group->identifier().get()), group->uid().get(), {}});
            addContent(group->content(), content.groups.back().content);
        } else if (const auto* graph = dynamic_cast<const Doc::Graph*>(&item)) {
            content.graphs.push_back(graphOf(*graph));
        } else if (const auto* function = dynamic_cast<const Doc::Function*>(&item)) {
            content.functions.push_back(functionOf(*function));
        } else if (const auto* resource = dynamic_cast<const Doc::Resource*>(&item)) {
            content.resources.push_back(resourceOf(*resource));
        }
    }
}

} // namespace

QString wordOf(DependencyWay way)
{
    switch (way) {
    case DependencyWay::Itself:
        return QStringLiteral("itself");
    case DependencyWay::Absolute:
        return QStringLiteral("absolute");
    case DependencyWay::Presets:
        return QStringLiteral("presets");
    default:
        return QStringLiteral("relative");
    }
}

std::optional<Inventory> takeInventory(const QString& file, const QStringList& presetsPaths,
                                       QString& reason)
{
    // References begin in the folder in which the file really lies.
    const QString canonical = Orv::Core::canonicalPath(file);
    const QString place = canonical.isEmpty() ? file : canonical;
    const std::optional<PackageHead> head = readHead(place, reason);
    if (!head)
        return std::nullopt;
    const OpenedPackage package = openForReading(place, *head, presetsPaths);
    if (package.document == nullptr) {
        reason = package.reason;
        return std::nullopt;
    }
    return inventoryOf(package);
}

Inventory inventoryOf(const OpenedPackage& package)
{
    Inventory inventory;
    inventory.head = package.head;
    inventory.updates = package.updates;
    inventory.dependencies = dependenciesOf(*package.document, package.head, package.file);
    addContent(package.document->content(), inventory.content);
    Orv::Data::visitTree(std::as_const(*package.document), [&](const Orv::Data::BaseObject&) { //
        ++inventory.objectCount;
    });
    return inventory;
}

QString nameOfType(unsigned type)
{
    struct Name
    {
        unsigned type;
        const char* name;
    };
    static constexpr Name names[] = {
        {ValueType::ColorImage, "color"},
        {ValueType::GrayscaleImage, "grayscale"},
        {ValueType::Image, "image"},
#define VALUE_TYPE(name, bit, ...) {bit, #name},
#include "data/desc/valuetypes.inc"
    };
    for (const Name& one : names)
        if (one.type == type)
            return QString::fromLatin1(one.name).toLower();
    return QString::number(type);
}

} // namespace Ksx::Kit
