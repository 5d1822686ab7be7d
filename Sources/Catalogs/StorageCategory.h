#pragma once

#include "Catalogs/CleanupEntry.h"
#include "Catalogs/CleanupTarget.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace brimvale {

/// How a category gets its size.
enum class CategoryMeasurement {
    measured, ///< the sum over its roots
    remainder ///< the volume's used space minus all measured categories
};

/// What may be done with a category's entries.
struct ReadOnlyAction {
    std::string reason; ///< shown instead of any removal control
    friend bool operator==(const ReadOnlyAction &, const ReadOnlyAction &) = default;
};
struct BackupThenRemoveAction {
    std::optional<std::string> quitFirst; ///< identifier of the application that must not run then
    std::string warning;
    std::string application = {}; ///< the name of that application
    friend bool operator==(const BackupThenRemoveAction &, const BackupThenRemoveAction &) = default;
};
struct ApplicationsAction {
    friend bool operator==(const ApplicationsAction &, const ApplicationsAction &) = default;
};
struct RemovableAction {
    friend bool operator==(const RemovableAction &, const RemovableAction &) = default;
};
/// They are in the Trash: they can be put back, or deleted.
struct TrashAction {
    friend bool operator==(const TrashAction &, const TrashAction &) = default;
};
using CategoryAction =
    std::variant<ReadOnlyAction, BackupThenRemoveAction, ApplicationsAction, RemovableAction, TrashAction>;

/// A named part of the used space in the overview.
struct StorageCategory {
    std::string id;
    std::string title;
    std::string symbol;
    std::string colorName;
    std::string detail;
    std::vector<std::string> roots = {}; ///< absolute paths, in order
    bool listsContents = false;          ///< rows are the children of the roots, not the roots
    CleanupRisk risk = CleanupRisk::safe;
    CategoryMeasurement measurement = CategoryMeasurement::measured;
    CategoryAction action;
    std::optional<std::string> caveat = {};
    /// More places that the action applies to. They are rows neither here nor in System Data.
    std::vector<std::string> alsoCovers = {};
    /// Entries of the roots that are places of their own, so they are no rows.
    std::vector<std::string> exceptions = {};

    /// Whether this machine has a place for it. Only catalogs that look for their places leave all out.
    [[nodiscard]] bool hasPlace() const {
        return !roots.empty() || measurement == CategoryMeasurement::remainder;
    }

    friend bool operator==(const StorageCategory &, const StorageCategory &) = default;
};

/// The places of other users' files.
struct OtherUsers {
    std::string homes;  ///< the parent of all home folders
    std::string shared; ///< the name of the folder in it that all users share; empty where there is none
};

/// A category with its figures.
struct MeasuredCategory {
    StorageCategory category;
    std::int64_t size = 0; ///< allocated bytes, without entries on other volumes
    std::vector<CleanupEntry> entries = {};
    bool measured = false;          ///< the figure is final
    bool hasUnreadableRoot = false; ///< a root exists, but could not be listed when it was measured
    /// The places of rows, and of rows too small to be shown, of which a part could not be read.
    std::vector<std::string> incomplete = {};

    friend bool operator==(const MeasuredCategory &, const MeasuredCategory &) = default;
};

} // namespace brimvale
