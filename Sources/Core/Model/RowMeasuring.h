#pragma once

#include "Base/FileURL.h"
#include "Core/Removal/GonePaths.h"
#include "Platform/OpenedItem.h"

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace brimvale {

class StopFlag;

/// The rows of the lists whose items a removal has deleted only in part, or has found replaced.
namespace RowMeasuring {

/// What a row shows now.
struct Shown {
    std::int64_t size = 0; ///< allocated bytes
    std::optional<ItemPin> pin = {};
};

/// Rows with what they show; nothing for items that no longer exist.
using Rows = std::unordered_map<FileURL, std::optional<Shown>>;

/// Whether the row shows one of these items, or an item inside or around one.
[[nodiscard]] bool isTouched(const FileURL &row, const GonePaths &partlyGone);

/// Measures the items of rows, each once. Blocks; call it off the main thread.
[[nodiscard]] Rows measure(const std::vector<FileURL> &items, const StopFlag &cancelled);

/// The rows that no longer exist.
[[nodiscard]] GonePaths goneIn(const Rows &rows);

/// Sets the size and the pin of a row to those of now, if it was measured and exists; returns whether it was.
bool update(const Rows &rows, const FileURL &row, std::int64_t &size, std::optional<ItemPin> &pin);

} // namespace RowMeasuring

} // namespace brimvale
