#include "packageparts.h"

#include "core/fileplace.h"
#include "core/messagenode.h"
#include "data/content/graph.h"
#include "data/content/package.h"
#include "data/content/resource.h"
#include "data/filename.h"
#include "data/xmlvalueconverter.h"
#include "ksx/core/failurereason.h"
#include "ksx/core/packagereader.h"
#include <QDir>
#include <QFileInfo>
#include <utility>

namespace Ksx::Kit {

namespace {

namespace Doc = Data::Content;
using Orv::Core::MessageNode;
using PresetsNames = Orv::Data::XmlValueConverterURLPrefixReplacement;

const char* const PresetsPrefix = "obl://";
const char* const OldPresetsPrefix = "ksx://";

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
            return latinText(option.value().get());
    return {};
}

DependencyWay wayOf(const QString& filename)
{
    if (filename == QLatin1String(ItselfName))
        return DependencyWay::Itself;
    if (filename.startsWith(QLatin1String(PresetsPrefix)) ||
        filename.startsWith(QLatin1String(OldPresetsPrefix)))
        return DependencyWay::Presets;
    return QDir::isAbsolutePath(filename) ? DependencyWay::Absolute : DependencyWay::Relative;
}

std::list<QDir> foldersOf(const QStringList& presetsPaths)
{
    if (presetsPaths.isEmpty())
        return {QDir(Orv::Core::currentFolder())};
    return {presetsPaths.begin(), presetsPaths.end()};
}

} // namespace

std::string textOfConstant(const Orv::Data::BaseObject& constant)
{
    const auto& members = static_cast<const Orv::Data::Container&>(constant);
    return static_cast<const Orv::Data::AttributeBase&>(*members.childAt(0)).toString();
}

QString latinText(std::string_view text)
{
    return QString::fromLatin1(text.data(), static_cast<int>(text.size()));
}

Input inputOf(const Doc::ParamInput& input)
{
    const Doc::Options& options = input.defaultWidget().options();
    return {latinText(input.identifier().get()),
            input.uid().get(),
            latinText(input.attributes().label().get()),
            latinText(input.group().get()),
            input.type().value().get(),
            input.defaultValue().isEmpty() ? QString()
                                           : latinText(textOfConstant(*input.defaultValue().get())),
            latinText(input.defaultWidget().name().get()),
            optionOf(options, "min"),
            optionOf(options, "max"),
            input.disabled().value().get()};
}

Resource resourceOf(const Doc::Resource& resource)
{
    Resource one;
    one.identifier = latinText(resource.identifier().get());
    one.uid = resource.uid().get();
    one.format = latinText(resource.format().get());
    one.path = Orv::fromBytes(resource.filepath().get());
    one.isFound = Orv::Data::hasPath(one.path) && Orv::Core::exists(one.path);
    one.size = one.isFound ? QFileInfo(one.path).size() : 0;
    if (!resource.source().isEmpty())
        one.source = latinText(resource.source().get()->getMeta().name);
    return one;
}

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

std::unique_ptr<Doc::Package> openPackage(const QString& file, const QStringList& presetsPaths,
                                          QStringList& updates, QString& reason)
{
    const PresetsNames presets(PresetsPrefix, foldersOf(presetsPaths));
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

std::unique_ptr<Doc::Package> openVersionAt(const QString& place, const QString& file,
                                            const QStringList& presetsPaths, QString& reason)
{
    const PresetsNames presets(PresetsPrefix, {presetsPaths.begin(), presetsPaths.end()});
    const Core::PackageReader::Converters converters{&presets};
    MessageNode report;
    auto package = Core::PackageReader::open(QUrl::fromLocalFile(file), &report, {}, {},
                                             presetsPaths.isEmpty() ? nullptr : &converters,
                                             nullptr, true, QUrl::fromLocalFile(place));
    if (package == nullptr)
        reason = Core::failureReason(file, firstErrorIn(report));
    return package;
}

QString pathOfReference(const QString& reference, const QStringList& presetsPaths)
{
    const PresetsNames presets(PresetsPrefix, foldersOf(presetsPaths));
    std::string path;
    return presets.convert(Orv::toBytes(reference), path) ? Orv::fromBytes(path) : reference;
}

} // namespace Ksx::Kit
