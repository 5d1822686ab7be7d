#include "Core/Model/RowMeasuring.h"

#include "Base/StopFlag.h"
#include "Core/Model/Workers.h"
#include "Core/Removal/Remover.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Scan/ScanOptions.h"

#include <utility>

namespace brimvale::RowMeasuring {

namespace {

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

} // namespace

void measureAgain(Workers &workers, QObject *context, std::vector<FileURL> rows, const GonePaths &partlyGone,
                  std::function<void(const Rows &)> use) {
    std::erase_if(rows, [&](const FileURL &row) { return !isTouched(row, partlyGone); });
    if (rows.empty())
        return;
    workers.run(
        context, [rows = std::move(rows), cancelled = workers.closing()] { return measure(rows, cancelled); },
        std::move(use));
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
