#pragma once

#include "Base/FileError.h"
#include "Base/Result.h"
#include "Base/TextSink.h"
#include "Catalogs/CleanupEntry.h"
#include "Core/Removal/RemovalMode.h"
#include "Core/Removal/RemovalResult.h"
#include "Platform/OpenedItem.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// An item of a plan, as it was when the plan was made.
struct PlannedItem {
    ItemPin pin; ///< its place is a path without links
    std::int64_t size = 0;
    ItemDetails change = {}; ///< its length and last change

    friend bool operator==(const PlannedItem &, const PlannedItem &) = default;
};

/// Items to remove later, perhaps by another program: each only if it is still the same one. A file with a
/// plan is described in docs/PLAN-FILE.md.
struct RemovalPlan {
    RemovalMode mode = RemovalMode::trash;
    std::vector<PlannedItem> items = {};
    std::string program = {}; ///< that made it, with its version
    std::string host = {};    ///< where it was made
    std::string made = {};    ///< when, in ISO 8601

    friend bool operator==(const RemovalPlan &, const RemovalPlan &) = default;
};

/// A plan, and what is not in it, with the reasons.
struct MadePlan {
    RemovalPlan plan;
    std::vector<RemovalResult::Failure> leftOut = {};
};

/// A plan for these entries as they are now. Leaves out what the guards refuse and what is no longer the item
/// that was shown. Reads the disk.
[[nodiscard]] MadePlan planFor(const std::vector<CleanupEntry> &entries, RemovalMode mode);

/// Writes the plan as JSON.
void writePlan(TextSink &sink, const RemovalPlan &plan);

/// Puts a file with the plan, which only its owner can read, at an absolute path, in the place of any file
/// that is there.
[[nodiscard]] std::optional<FileError> savePlan(const std::string &path, const RemovalPlan &plan);

/// The plan in a text; or what is wrong with it, as a sentence. A text may be damaged or hostile.
[[nodiscard]] Result<RemovalPlan, std::string> planIn(std::string_view text);

/// The same for the file at an absolute path.
[[nodiscard]] Result<RemovalPlan, std::string> planAt(const std::string &path);

/// Whether the item has surely been there since the plan was made, as far as its dates tell. Where the file
/// system keeps no time of creation, a new item may have got the number of the old one.
[[nodiscard]] bool isUnchanged(const PlannedItem &item);

} // namespace brimvale
