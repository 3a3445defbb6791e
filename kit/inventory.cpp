#include "ksx/kit/inventory.h"

#include "core/fileplace.h"
#include "core/messagenode.h"
#include "data/content/compnode.h"
#include "data/content/function.h"
#include "data/content/graph.h"
#include "data/content/group.h"
#include "data/content/package.h"
#include "data/content/resource.h"
#include "data/desc/valuetype.h"
#include "data/filename.h"
#include "data/treewalk.h"
#include "data/xmlvalueconverter.h"
#include "ksx/core/failurereason.h"
#include "ksx/core/packagereader.h"
#include <QDir>
#include <QFileInfo>

namespace Ksx::Kit {

namespace {

namespace Doc = Data::Content;
namespace ValueType = Data::Desc::ValueType;
using Orv::Core::MessageNode;
using Orv::Data::Text;

const char* const PresetsPrefix = "obl://";
const char* const OldPresetsPrefix = "ksx://";
const char* const Itself = "?himself";

// Texts of a document have 8 bits.
QString shown(const Text& text)
{
    return QString::fromLatin1(text.data(), static_cast<int>(text.size()));
}

QString firstErrorIn(const MessageNode& node)
{
    if (node.level() == Orv::Core::MessageLevel::Error)
        return node.text();
    for (const auto& child : node.children())
        if (child->hasError())
            return firstErrorIn(*child);
    return {};
}

QString optionOf(const Doc::Options& options, std::string_view name)
{
    for (const Doc::Option& option : options)
        if (option.name().get() == name)
            return shown(option.value().get());
    return {};
}

// Returns the text of the value of a constant, which is the first member of its structure.
QString valueOf(const Doc::DefaultValue& value)
{
    if (value.isEmpty())
        return {};
    const auto& constant = static_cast<const Orv::Data::Container&>(*value.get());
    return shown(static_cast<const Orv::Data::AttributeBase&>(*constant.childAt(0)).toString());
}

Input inputOf(const Doc::ParamInput& input)
{
    const Doc::Options& options = input.defaultWidget().options();
    return {shown(input.identifier().get()),
            input.uid().get(),
            shown(input.attributes().label().get()),
            shown(input.group().get()),
            input.type().value().get(),
            valueOf(input.defaultValue()),
            shown(input.defaultWidget().name().get()),
            optionOf(options, "min"),
            optionOf(options, "max"),
            input.disabled().value().get()};
}

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
        one.identifier = shown(output.identifier().get());
        one.uid = output.uid().get();
        one.label = shown(output.attributes().label().get());
        for (const Doc::Usage& usage : output.usages())
            one.usages.push_back({shown(usage.name().get()), shown(usage.components().get())});
        one.isDisabled = output.disabled().value().get();
    }
    return all;
}

Resource resourceOf(const Doc::Resource& resource)
{
    Resource one;
    one.identifier = shown(resource.identifier().get());
    one.uid = resource.uid().get();
    one.format = shown(resource.format().get());
    one.path = Orv::fromBytes(resource.filepath().get());
    one.isFound = Orv::Data::hasPath(one.path) && Orv::Core::exists(one.path);
    one.size = one.isFound ? QFileInfo(one.path).size() : 0;
    if (!resource.source().isEmpty())
        one.source = shown(Text(resource.source().get()->getMeta().name));
    return one;
}

Function functionOf(const Doc::Function& function)
{
    return {shown(function.identifier().get()), function.uid().get(),
            shown(function.attributes().label().get()), function.type().value().get(),
            inputsOf(function.paraminputs())};
}

// Groups nest no deeper than a file may, which leaves room on the stack of a thread.
template <class Items>
void addContent(const Items& items, Content& content);

Graph graphOf(const Doc::Graph& graph)
{
    Graph one;
    one.identifier = shown(graph.identifier().get());
    one.uid = graph.uid().get();
    one.label = shown(graph.attributes().label().get());
    one.description = shown(graph.attributes().description().get());
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
            content.groups.push_back({shown(group->identifier().get()), group->uid().get(), {}});
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

DependencyWay wayOf(const QString& filename)
{
    if (filename == QLatin1String(Itself))
        return DependencyWay::Itself;
    if (filename.startsWith(QLatin1String(PresetsPrefix)) ||
        filename.startsWith(QLatin1String(OldPresetsPrefix)))
        return DependencyWay::Presets;
    return QDir::isAbsolutePath(filename) ? DependencyWay::Absolute : DependencyWay::Relative;
}

// The head has the names of the file, and the package has the paths to which they lead. Updates keep
// the order of dependencies, and add new ones behind them.
std::vector<Dependency> dependenciesOf(const Doc::Package& package, const PackageHead& head,
                                       const QString& file)
{
    std::vector<Dependency> all;
    for (const Doc::Dependency& dependency : package.dependencies()) {
        if (all.size() == head.dependencies.size())
            break;
        Dependency one;
        one.named = head.dependencies[all.size()];
        one.way = wayOf(one.named.filename);
        one.path =
            one.way == DependencyWay::Itself ? file : Orv::fromBytes(dependency.filename().get());
        const QString found = Orv::Core::canonicalPath(one.path);
        one.isFound = !found.isEmpty();
        if (one.isFound)
            one.path = found;
        all.push_back(one);
    }
    return all;
}

std::list<QDir> foldersOf(const QStringList& presetsPaths)
{
    if (presetsPaths.isEmpty())
        return {QDir(Orv::Core::currentFolder())};
    return {presetsPaths.begin(), presetsPaths.end()};
}

std::unique_ptr<Doc::Package> openPackage(const QString& file, const QStringList& presetsPaths,
                                          QStringList& updates, QString& reason)
{
    const Orv::Data::XmlValueConverterURLPrefixReplacement presets(PresetsPrefix,
                                                                   foldersOf(presetsPaths));
    const Core::PackageReader::Converters converters{&presets};
    const auto note = [&](const Core::PackageReader::Updaters& steps, const QUrl&, const auto&) {
        for (const auto* step : steps)
            updates.append(step->updaterVersion().toString());
        updates.removeDuplicates();
        return true;
    };
    MessageNode report;
    auto package = Core::PackageReader::open(QUrl::fromLocalFile(file), &report, {}, note,
                                             &converters, nullptr, true);
    if (package == nullptr)
        reason = Core::failureReason(file, firstErrorIn(report));
    return package;
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
    Inventory inventory;
    inventory.head = *head;
    const auto package = openPackage(place, presetsPaths, inventory.updates, reason);
    if (package == nullptr)
        return std::nullopt;
    inventory.dependencies = dependenciesOf(*package, *head, place);
    addContent(package->content(), inventory.content);
    Orv::Data::visitTree(std::as_const(*package), [&](const Orv::Data::BaseObject&) { //
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
