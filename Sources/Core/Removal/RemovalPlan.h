#pragma once

#include "Base/FileError.h"
#include "Base/Result.h"
#include "Base/StopFlag.h"
#include "Base/TextSink.h"
#include "Catalogs/CleanupEntry.h"
#include "Catalogs/ProgramSigns.h"
#include "Core/Removal/RemovalMode.h"
#include "Core/Removal/RemovalResult.h"
#include "Platform/OpenedItem.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

class JsonWriter;

/// An entry of the disk that a plan names, as it was when the plan was made.
struct PlannedEntry {
    ItemPin pin;               ///< its place is a path without links
    ItemDetails change = {};   ///< its length and last change; of a folder without meaning
    std::string contents = {}; ///< of a folder, the digest of what is in it (`contentsDigest`)

    friend bool operator==(const PlannedEntry &, const PlannedEntry &) = default;
};

/// An item that a plan removes.
struct PlannedItem {
    PlannedEntry entry;
    std::int64_t size = 0;                     ///< allocated bytes
    std::optional<PlannedEntry> equalTo = {};  ///< a file with the same contents, which has to stay
    std::optional<ProgramSigns> notWhile = {}; ///< a program that must not run then
    std::vector<PlannedEntry> companions = {}; ///< files that go when the item is gone

    friend bool operator==(const PlannedItem &, const PlannedItem &) = default;
};

/// Items to remove later, perhaps by another program: each only if it is still the same one and has not
/// changed. A file with a plan is described in docs/PLAN-FILE.md.
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

/// A plan for these entries as they are now. Leaves out what would be refused and what is no longer the item
/// that was shown. Reads the disk, folders with everything in them. Not complete once `stopped` is set.
[[nodiscard]] MadePlan planFor(const std::vector<CleanupEntry> &entries, RemovalMode mode,
                               const StopFlag &stopped);

/// What is in the folder at an absolute path, as a SHA-256 digest of names, kinds, numbers, lengths and dates
/// of change; without the numbers where the file system may change them. Nothing where something inside can't
/// be read, or once `stopped` is set.
[[nodiscard]] std::optional<std::string> contentsDigest(const std::string &folder, bool hasSteadyNumbers,
                                                        const StopFlag &stopped);

/// Writes the plan as a JSON document, or as the next value of one.
void writePlan(TextSink &sink, const RemovalPlan &plan);
void writePlan(JsonWriter &json, const RemovalPlan &plan);

/// Puts a file with the plan, which only its owner can read, at an absolute path, in the place of any file
/// that is there.
[[nodiscard]] std::optional<FileError> savePlan(const std::string &path, const RemovalPlan &plan);

/// The plan in a text; or what is wrong with it, as a sentence. A text may be damaged or hostile.
[[nodiscard]] Result<RemovalPlan, std::string> planIn(std::string_view text);

/// The same for the file at an absolute path. A plan that somebody else than the user and the administrator
/// may change is not read.
[[nodiscard]] Result<RemovalPlan, std::string> planAt(const std::string &path);

} // namespace brimvale
