#pragma once

#include "Base/Date.h"
#include "Base/FileURL.h"
#include "Catalogs/CleanupNotes.h"
#include "Platform/OpenedItem.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// One item that can be removed: a row of a cleanup target or of a storage category.
struct CleanupEntry {
    FileURL url;
    std::int64_t size = 0; ///< allocated bytes
    std::optional<Date> modified = {};
    bool isFolder = false;           ///< as it was measured; a link is none
    std::optional<ItemPin> pin = {}; ///< the item as it was measured; only this one is removed
    bool isElsewhere = false;        ///< on another volume than the one that the categories divide
    bool hasLinkedFiles = false;     ///< files inside have several names, so deleting it may free less
    std::shared_ptr<const CleanupNotes> notes = {}; ///< what the catalog knows about it; null for nothing

    /// Why it cannot be removed here, as a sentence; empty if it can.
    [[nodiscard]] std::string keptBecause() const { return notes ? notes->keptBecause : std::string(); }
    /// Its name for people.
    [[nodiscard]] std::string title() const {
        return notes && !notes->name.empty() ? notes->name : std::string(url.fileName());
    }
    /// Whether removing it may free less than its size, where the catalog looks for that.
    [[nodiscard]] bool freesLess() const { return notes && (notes->freesLess || hasLinkedFiles); }
    /// Whether the program that uses it was running when it was listed.
    [[nodiscard]] bool isInUse() const { return notes && notes->isInUse; }

    /// Whether they say the same of the same item. Its kind, its pin, its links and its notes do not count.
    friend bool operator==(const CleanupEntry &a, const CleanupEntry &b) {
        return a.url == b.url && a.size == b.size && a.modified == b.modified;
    }
};

/// Their paths, in the same order.
[[nodiscard]] inline std::vector<FileURL> urlsOf(const std::vector<CleanupEntry> &entries) {
    std::vector<FileURL> urls;
    for (const CleanupEntry &entry : entries)
        urls.push_back(entry.url);
    return urls;
}

} // namespace brimvale
