#pragma once

#include "Base/FileURL.h"
#include "Core/Removal/GonePaths.h"

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace brimvale {

class StopFlag;

/// The rows of the lists whose items a removal has deleted only in part.
namespace RowMeasuring {

/// Rows with their sizes in allocated bytes; nothing for items that no longer exist.
using Sizes = std::unordered_map<FileURL, std::optional<std::int64_t>>;

/// Whether the row shows one of these items, or an item inside or around one.
[[nodiscard]] bool isTouched(const FileURL &row, const GonePaths &partlyGone);

/// Measures the rows, each once. Blocks; call it off the main thread.
[[nodiscard]] Sizes measure(const std::vector<FileURL> &rows, const StopFlag &cancelled);

/// The rows that no longer exist.
[[nodiscard]] GonePaths goneIn(const Sizes &sizes);

/// Sets `size` to the row's size now, if it was measured and exists; returns whether it was.
bool setSize(const Sizes &sizes, const FileURL &row, std::int64_t &size);

} // namespace RowMeasuring

} // namespace brimvale
