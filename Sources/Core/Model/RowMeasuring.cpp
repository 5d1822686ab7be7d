#include "Core/Model/RowMeasuring.h"

#include "Base/StopFlag.h"
#include "Core/Removal/Remover.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Scan/ScanOptions.h"

namespace brimvale::RowMeasuring {

bool isTouched(const FileURL &row, const GonePaths &partlyGone) {
    return partlyGone.contains(row) || partlyGone.reachInto(row);
}

Rows measure(const std::vector<FileURL> &items, const StopFlag &cancelled) {
    const ScanOptions options = ScanOptions::standard();
    Rows rows;
    for (const FileURL &item : items) {
        if (cancelled.isSet())
            break;
        const auto [row, isNew] = rows.try_emplace(item);
        if (isNew && !Remover::isGone(item))
            row->second =
                Shown{DiskScanner::quickSize(item.path(), options, cancelled), pinOf(item.standardized())};
    }
    return rows;
}

GonePaths goneIn(const Rows &rows) {
    std::vector<FileURL> gone;
    for (const auto &[item, shown] : rows)
        if (!shown)
            gone.push_back(item);
    return GonePaths(std::move(gone));
}

bool update(const Rows &rows, const FileURL &row, std::int64_t &size, std::optional<ItemPin> &pin) {
    const auto measured = rows.find(row);
    if (measured == rows.end() || !measured->second)
        return false;
    size = measured->second->size;
    pin = measured->second->pin;
    return true;
}

} // namespace brimvale::RowMeasuring
