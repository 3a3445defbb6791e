#include "merge/mergestate.h"

#include "compare/words.h"

namespace Ksx::Kit {

namespace {

using Orv::Data::BaseObject;

QString textOf(const BaseObject* value, const QDir& folder)
{
    if (value == nullptr)
        return {};
    const bool isItem = !kindOf(*value).element.empty();
    return isItem ? summaryOf(*value, folder) : valueText(*value, folder);
}

} // namespace

QString removalText(Side remover, const char* change)
{
    const QString text = remover == Ours
                             ? QStringLiteral("Our side has removed it, and theirs has %1 it")
                             : QStringLiteral("Their side has removed it, and ours has %1 it");
    return text.arg(QLatin1String(change));
}

void MergeState::addConflict(const Trio& values, const QString& reason)
{
    add(walk.location(), values, reason);
}

void MergeState::addConflictOf(const BaseObject& item, const Trio& values, const QString& reason)
{
    add(walk.locationOf(item), values, reason);
}

void MergeState::add(Location location, const Trio& values, const QString& reason)
{
    conflicts.push_back({std::move(location), textOf(values.base, folder),
                         textOf(values.sides[Ours], folder), textOf(values.sides[Theirs], folder),
                         reason});
}

} // namespace Ksx::Kit
