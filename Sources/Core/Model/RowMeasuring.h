#pragma once

#include "Base/FileURL.h"
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

/// The rows of the lists whose items a removal has deleted only in part, or has found replaced.
namespace RowMeasuring {

/// What a row shows now.
struct Shown {
    std::int64_t size = 0; ///< allocated bytes
    std::optional<ItemPin> pin = {};
};

/// Rows with what they show; nothing for items that no longer exist.
using Rows = std::unordered_map<FileURL, std::optional<Shown>>;

/// Measures those of the rows in the background that show one of these items, or an item inside or around
/// one, each once. Then calls `use` on the main thread, unless there is no such row or `context` is gone.
void measureAgain(Workers &workers, QObject *context, std::vector<FileURL> rows, const GonePaths &partlyGone,
                  std::function<void(const Rows &)> use);

/// The rows that no longer exist.
[[nodiscard]] GonePaths goneIn(const Rows &rows);

/// Sets the size and the pin of a row to those of now, if it was measured and exists; returns whether it was.
bool update(const Rows &rows, const FileURL &row, std::int64_t &size, std::optional<ItemPin> &pin);

} // namespace RowMeasuring

} // namespace brimvale
