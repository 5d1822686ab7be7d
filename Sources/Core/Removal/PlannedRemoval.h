#pragma once

#include "Base/Result.h"
#include "Base/StopFlag.h"
#include "Catalogs/CleanupEntry.h"
#include "Core/Removal/RemovalPlan.h"
#include "Core/Removal/RemovalResult.h"
#include "Platform/OpenedItem.h"

#include <string>
#include <vector>

namespace brimvale {

/// What a plan says of an item that was opened; or why it can't be in one, as a sentence.
[[nodiscard]] Result<PlannedEntry, std::string> plannedEntry(const OpenedItem &item, const StopFlag &stopped);

/// The items of a plan that may be removed now, not measured, each pinned, at its place, and with a look at
/// it right before it goes: it must be what the plan names, and an equal file must stay where it is a
/// duplicate. An item inside another one goes with it. `others` gets all other items, with the reasons. Not
/// complete once `stopped` is set.
[[nodiscard]] std::vector<CleanupEntry>
entriesOf(const RemovalPlan &plan, std::vector<RemovalResult::Failure> &others, const StopFlag &stopped);

} // namespace brimvale
