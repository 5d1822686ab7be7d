#include "Core/Model/RowMeasuring.h"

#include "Base/StopFlag.h"
#include "Core/Removal/Remover.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Scan/ScanOptions.h"

namespace brimvale::RowMeasuring {

bool isTouched(const FileURL &row, const GonePaths &partlyGone) {
    return partlyGone.contains(row) || partlyGone.reachInto(row);
}

Sizes measure(const std::vector<FileURL> &rows, const StopFlag &cancelled) {
    const ScanOptions options = ScanOptions::standard();
    Sizes sizes;
    for (const FileURL &row : rows) {
        if (cancelled.isSet())
            break;
        const auto [one, isNew] = sizes.try_emplace(row);
        if (isNew && !Remover::isGone(row))
            one->second = DiskScanner::quickSize(row.path(), options, cancelled);
    }
    return sizes;
}

GonePaths goneIn(const Sizes &sizes) {
    std::vector<FileURL> gone;
    for (const auto &[row, size] : sizes)
        if (!size)
            gone.push_back(row);
    return GonePaths(std::move(gone));
}

bool setSize(const Sizes &sizes, const FileURL &row, std::int64_t &size) {
    const auto measured = sizes.find(row);
    if (measured == sizes.end() || !measured->second)
        return false;
    size = *measured->second;
    return true;
}

} // namespace brimvale::RowMeasuring
