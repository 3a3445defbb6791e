#include "compare/words.h"

#include "compare/references.h"
#include "data/attribute.h"
#include "data/containerunion.h"
#include "data/content/compnode.h"
#include "data/content/contentobjectbase.h"
#include "data/filename.h"
#include "ksx/kit/inventory.h"
#include "packageparts.h"

namespace Ksx::Kit {

namespace {

namespace Doc = Data::Content;
using Orv::Data::BaseObject;
using Orv::Data::ObjectKind;

// The member of each item that tells the most about it.
struct Telling
{
    std::string_view element;
    std::string_view member;
};

constexpr Telling Tellings[] = {
    {"paramNode", "function"},     {"paramsGraphNode", "type"}, {"parameter", "paramValue"},
    {"funcData", "constantValue"}, {"resource", "filepath"},    {"usage", "components"},
    {"option", "value"},           {"paraminput", "type"},      {"paramsGraphData", "type"},
};

QString fileText(const std::string& path, const QDir& folder)
{
    const QString text = Orv::fromBytes(path);
    return QDir::isAbsolutePath(text) ? folder.relativeFilePath(text) : text;
}

QString nodeText(const Doc::CompNode& node, const QDir& folder)
{
    const BaseObject* const what = node.compImplementation().get();
    if (const auto* filter = dynamic_cast<const Doc::CompFilter*>(what))
        return latinText(filter->filter().get());
    if (const auto* instance = dynamic_cast<const Doc::CompInstance*>(what))
        return QStringLiteral("instance of %1").arg(valueText(instance->path().value(), folder));
    if (const auto* input = dynamic_cast<const Doc::CompInputBridge*>(what))
        return QStringLiteral("input %1").arg(input->entry().get());
    if (const auto* output = dynamic_cast<const Doc::CompOutputBridge*>(what))
        return QStringLiteral("output %1").arg(output->output().get());
    return what == nullptr ? QString() : latinText(what->getMeta().name);
}

QString connectionText(const Doc::Connexion& connexion)
{
    if (!connexion.connRef().isModified())
        return QStringLiteral("nothing");
    const QString node = QStringLiteral("node %1").arg(connexion.connRef().value().get());
    return connexion.connRefOutput().isModified()
               ? QStringLiteral("%1, output %2")
                     .arg(node)
                     .arg(connexion.connRefOutput().value().get())
               : node;
}

QString countedNodes(const BaseObject& owner)
{
    const std::size_t count = nodesOf(owner)->size();
    return count == 1 ? QStringLiteral("1 node") : QStringLiteral("%1 nodes").arg(count);
}

} // namespace

QString valueText(const BaseObject& value, const QDir& folder)
{
    if (value.kind() == ObjectKind::Union) {
        const auto& choice = static_cast<const Orv::Data::ContainerUnionBase&>(value);
        return choice.isEmpty() ? QString() : valueText(*choice.get(), folder);
    }
    if (nodesOf(value) != nullptr)
        return QStringLiteral("a function of %1").arg(countedNodes(value));
    if (value.kind() != ObjectKind::Attribute) {
        const BaseObject* const member = memberOf(value, "value");
        return member == nullptr ? latinText(value.getMeta().name) : valueText(*member, folder);
    }
    const auto& leaf = static_cast<const Orv::Data::AttributeBase&>(value);
    if ((value.getMeta().valueFlags & Orv::Data::ValueFlag::FilePath) != 0)
        return fileText(leaf.toString(), folder);
    const BaseObject* const owner = value.getParent();
    if (owner != nullptr && owner->getMeta().name == "type" && !leaf.isText())
        return nameOfType(static_cast<const Orv::Data::Attribute<Orv::Data::UInt>&>(leaf).get());
    return latinText(leaf.toString());
}

QString wordFor(const BaseObject& item)
{
    return QString::fromLatin1(kindOf(item).word);
}

QString nameFor(const BaseObject& item, const QDir& folder)
{
    if (const std::string* const name = nameOf(item))
        return item.getMeta().name == "dependency" ? fileText(*name, folder) : latinText(*name);
    const auto uid = uidOf(item);
    return uid ? QString::number(*uid) : QString();
}

QString phraseFor(const BaseObject& item, const QDir& folder)
{
    const QString phrase = wordFor(item) + QLatin1Char(' ') + nameFor(item, folder);
    const QString summary = nameOf(item) == nullptr ? summaryOf(item, folder) : QString();
    return summary.isEmpty() ? phrase : QStringLiteral("%1 (%2)").arg(phrase, summary);
}

QString summaryOf(const BaseObject& item, const QDir& folder)
{
    if (const auto* node = dynamic_cast<const Doc::CompNode*>(&item))
        return nodeText(*node, folder);
    if (const auto* connexion = dynamic_cast<const Doc::Connexion*>(&item))
        return connectionText(*connexion);
    if (nodesOf(item) != nullptr)
        return countedNodes(item);
    for (const Telling& telling : Tellings)
        if (telling.element == item.getMeta().name)
            return valueText(*memberOf(item, telling.member), folder);
    return {};
}

} // namespace Ksx::Kit
