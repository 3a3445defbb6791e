// The results of a unit, which take their places together or not at all.
#pragma once

#include "ksx/kit/batchplan.h"
#include <QString>
#include <QStringList>

namespace Ksx::Kit {

// The names of the journals of placements, which lie in the state folder.
QString journalOfComponent(unsigned shard, unsigned component);
QString journalOfPlan();
// Patterns for the journals of a shard, and for all.
QString journalsOfShard(unsigned shard);
QString allJournals();

// Puts results that are staged into their places. Each former result is kept under a second name
// meanwhile, so that all can be taken back, and a journal tells a later process what was begun.
// Returns a sentence on failure. No result is in its place then, unless isPlacing() says so.
QString placeResults(const BatchPlan& plan, const QString& journal, const QStringList& outputs);

// Returns whether a placement has begun that could neither be completed nor taken back.
bool isPlacing(const BatchPlan& plan, const QString& journal);

// Completes what a process that was killed has left, or takes it back where that fails. `journals`
// is a pattern of names. Returns a sentence if results can neither be placed nor taken back.
QString recoverPlacements(const BatchPlan& plan, const QString& journals);

// Removes what killed runs have left that no placement needs any more. Results that are staged go as
// well unless `keepsStaged` is set. No other run may be staging.
void removeLeftovers(const BatchPlan& plan, bool keepsStaged);

// Removes results that are staged.
void removeStaged(const BatchPlan& plan, const QStringList& outputs);

} // namespace Ksx::Kit
