#include "Core/Model/RowMeasuring.h"

#include "Base/StopFlag.h"
#include "Core/Model/Workers.h"
#include "Core/Removal/Remover.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Scan/ScanOptions.h"
#include "Core/Storage/CleanupEntries.h"

#include <utility>

namespace brimvale {

namespace {

RowMeasuring::Rows measure(const std::vector<FileURL> &items, const StopFlag &cancelled) {
    const ScanOptions options = ScanOptions::standard();
    RowMeasuring::Rows rows;
    for (const FileURL &item : items) {
        if (cancelled.isSet())
            break;
        const auto [row, isNew] = rows.try_emplace(item);
        if (!isNew || Remover::isGone(item))
            continue;
        const DiskScanner::QuickFigures figures = DiskScanner::quickFigures(item.path(), options, cancelled);
        row->second = RowMeasuring::Shown{figures.bytes, pinOf(item.standardized()),
                                          figures.freedBytes != figures.bytes};
    }
    return rows;
}

} // namespace

RowMeasuring::RowMeasuring(Workers &workers, QObject *context, Find find,
                           std::function<void(const Rows &)> use)
    : workers_(workers), context_(context), find_(std::move(find)), use_(std::move(use)) {}

void RowMeasuring::measureAgain(const GonePaths &touched) {
    waiting_.add(touched);
    if (!isRunning_)
        begin();
}

void RowMeasuring::begin() {
    std::vector<FileURL> rows = find_(std::exchange(waiting_, {}));
    if (rows.empty())
        return;
    isRunning_ = true;
    workers_.run(
        context_,
        [rows = std::move(rows), cancelled = workers_.closing()] { return measure(rows, cancelled); },
        [this, run = ++run_](const Rows &measured) {
            if (run != run_)
                return;
            isRunning_ = false;
            use_(measured);
            if (!isRunning_ && !waiting_.isEmpty())
                begin();
        });
}

void RowMeasuring::forget() {
    ++run_;
    isRunning_ = false;
    waiting_ = {};
}

GonePaths RowMeasuring::goneIn(const Rows &rows) {
    std::vector<FileURL> gone;
    for (const auto &[item, shown] : rows)
        if (!shown)
            gone.push_back(item);
    return GonePaths(std::move(gone));
}

bool RowMeasuring::update(const Rows &rows, std::vector<CleanupEntry> &entries, std::int64_t minimum) {
    bool isChanged = false;
    const auto dropped = std::erase_if(entries, [&](CleanupEntry &entry) {
        const auto measured = rows.find(entry.url);
        if (measured == rows.end())
            return false;
        if (!measured->second || measured->second->size < minimum)
            return true;
        isChanged = isChanged || entry.size != measured->second->size;
        entry.size = measured->second->size;
        entry.pin = measured->second->pin;
        entry.hasLinkedFiles = measured->second->hasLinkedFiles;
        return false;
    });
    CleanupEntries::sort(entries);
    return isChanged || dropped > 0;
}

const RowMeasuring::Shown *RowMeasuring::find(const Rows &rows, const FileURL &row) {
    const auto measured = rows.find(row);
    return measured == rows.end() || !measured->second ? nullptr : &*measured->second;
}

} // namespace brimvale
