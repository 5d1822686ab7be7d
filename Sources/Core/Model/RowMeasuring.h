#pragma once

#include "Base/FileURL.h"
#include "Catalogs/CleanupEntry.h"
#include "Core/Removal/GonePaths.h"
#include "Platform/OpenedItem.h"

#include <QObject>
#include <cstdint>
#include <functional>
#include <optional>
#include <unordered_map>
#include <vector>

namespace brimvale {

class Workers;

/// Measures the rows of one list again after removals: those that show an item of which only a part is gone,
/// or one inside or around a removed item.
class RowMeasuring {
public:
    /// What a row shows now.
    struct Shown {
        std::int64_t size = 0; ///< allocated bytes
        std::optional<ItemPin> pin = {};
        bool hasLinkedFiles = false;
    };

    /// Rows with what they show; nothing for items that no longer exist.
    using Rows = std::unordered_map<FileURL, std::optional<Shown>>;

    /// The rows that show one of these items, or an item inside or around one.
    using Find = std::function<std::vector<FileURL>(const GonePaths &touched)>;

    /// `use` gets the measured rows on the main thread, unless `context` is destroyed first. `workers` must
    /// outlive it.
    RowMeasuring(Workers &workers, QObject *context, Find find, std::function<void(const Rows &)> use);

    /// Measures the rows that these items touch, in the background, each once. Runs follow each other, so no
    /// older size replaces a newer one.
    void measureAgain(const GonePaths &touched);

    /// Drops running and waiting work, because all rows are about to be measured anyway.
    void forget();

    /// The rows that no longer exist.
    [[nodiscard]] static GonePaths goneIn(const Rows &rows);

    /// Gives the measured ones among the entries their sizes, drops those that are gone or have fewer than
    /// `minimum` bytes, and sorts them like a new measurement. Returns whether anything has changed.
    static bool update(const Rows &rows, std::vector<CleanupEntry> &entries, std::int64_t minimum = 1);

    /// What the row shows now; null if it was not measured or does not exist.
    [[nodiscard]] static const Shown *find(const Rows &rows, const FileURL &row);

private:
    void begin();

    Workers &workers_;
    QObject *context_;
    Find find_;
    std::function<void(const Rows &)> use_;
    GonePaths waiting_; ///< touched since the running run began
    bool isRunning_ = false;
    int run_ = 0; ///< the number of the latest run
};

} // namespace brimvale
