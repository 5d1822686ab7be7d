#include "Core/Model/Storage.h"

#include "Core/Model/RowMeasuring.h"
#include "Core/Model/Volumes.h"
#include "Core/Model/Workers.h"
#include "Core/Scan/Counter.h"
#include "Core/Storage/CleanupEntries.h"
#include "Core/Storage/StorageCategories.h"
#include "Core/Storage/StorageFigures.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace brimvale {

namespace {

/// Sets a category's size after its rows have changed.
void addUp(MeasuredCategory &category) {
    if (category.category.measurement == CategoryMeasurement::measured)
        category.size = CleanupEntries::totalSize(category.entries);
}

/// Drops removed rows from a category, and returns whether there were any.
bool dropRows(MeasuredCategory &category, const GonePaths &gone) {
    const auto dropped =
        std::erase_if(category.entries, [&](const CleanupEntry &entry) { return gone.contains(entry.url); });
    if (dropped > 0)
        addUp(category);
    return dropped > 0;
}

/// Gives the rows of a category their sizes as measured again.
void updateRows(MeasuredCategory &category, const RowMeasuring::Rows &sizes) {
    bool isChanged = false;
    for (CleanupEntry &entry : category.entries)
        isChanged = RowMeasuring::update(sizes, entry.url, entry.size, entry.pin) || isChanged;
    if (isChanged)
        addUp(category);
}

/// System Data without figures, after a run that was stopped.
void clearRemainder(std::vector<MeasuredCategory> &categories) {
    for (MeasuredCategory &one : categories)
        if (one.category.measurement == CategoryMeasurement::remainder)
            one = {.category = one.category};
}

std::int64_t countMeasured(const std::vector<StorageCategory> &categories) {
    return std::count_if(categories.begin(), categories.end(), [](const StorageCategory &category) {
        return category.measurement == CategoryMeasurement::measured;
    });
}

} // namespace

Storage::Storage(Workers &workers, const Volumes &volumes)
    : Part({.categories = StorageFigures::unmeasured(StorageCategories::all())}), workers_(workers),
      volumes_(volumes) {}

Storage::~Storage() {
    stop_.set();
}

void Storage::stopMeasuring() {
    if (state().isMeasuringCategories)
        stop_.set();
}

const MeasuredCategory *Storage::category(std::string_view id) const {
    const std::vector<MeasuredCategory> &categories = state().categories;
    const auto found = std::find_if(categories.begin(), categories.end(),
                                    [id](const MeasuredCategory &one) { return one.category.id == id; });
    return found == categories.end() ? nullptr : &*found;
}

std::int64_t Storage::categorisedBytes() const {
    return StorageFigures::categorisedBytes(state().categories);
}

std::int64_t Storage::systemDataAccounted() const {
    return StorageFigures::systemDataAccounted(state().categories);
}

bool Storage::hasFigures() const {
    return state().isMeasuringCategories ||
           std::any_of(state().categories.begin(), state().categories.end(),
                       [](const MeasuredCategory &one) { return one.measured; });
}

void Storage::resolveRemainder(StorageState &state) const {
    if (state.wasStopped)
        return clearRemainder(state.categories);
    state.categories = StorageFigures::resolvingRemainder(std::move(state.categories), volumes_.rootVolume());
}

void Storage::resolveRemainder() {
    if (hasFigures())
        update([this](StorageState &state) { resolveRemainder(state); });
}

void Storage::measureCategories() {
    if (state().isMeasuringCategories)
        return;
    goneSinceBegin_ = partlyGoneSinceBegin_ = {};
    const std::vector<StorageCategory> all = StorageCategories::all();
    update([&](StorageState &state) {
        state.isMeasuringCategories = true;
        state.wasStopped = false;
        state.categoryProgress = 0;
        state.categories = StorageFigures::unmeasured(all);
    });
    stop_ = StopFlag();
    workers_.run(
        this,
        [this, context = QPointer<QObject>(this), all, cancelled = stop_] {
            const auto completed = std::make_shared<Counter>();
            const auto total = static_cast<double>(countMeasured(all));
            const auto finished = [&](MeasuredCategory measured) {
                if (cancelled.isSet())
                    return; // its figures may be incomplete
                onMainThread(context, [this, measured = std::move(measured), completed, total]() mutable {
                    show(std::move(measured), static_cast<double>(completed->add(1)) / total);
                });
            };
            return StorageCategories::measureAll(all, finished, cancelled);
        },
        [this](std::vector<CleanupEntry> rows) { finish(std::move(rows)); });
}

/// Publishes a measured category, without the rows removed since measuring began.
void Storage::show(MeasuredCategory measured, double progress) {
    dropRows(measured, goneSinceBegin_);
    update([&](StorageState &state) {
        for (MeasuredCategory &one : state.categories)
            if (one.category.id == measured.category.id)
                one = measured;
        resolveRemainder(state);
        state.categoryProgress = progress;
    });
    measureRowsAgain(partlyGoneSinceBegin_);
}

void Storage::finish(std::vector<CleanupEntry> rows) {
    update([&](StorageState &state) {
        state.isMeasuringCategories = false;
        state.wasStopped = stop_.isSet();
        if (state.wasStopped)
            return resolveRemainder(state);
        for (MeasuredCategory &one : state.categories)
            if (one.category.measurement == CategoryMeasurement::remainder) {
                one.entries = std::move(rows);
                dropRows(one, goneSinceBegin_);
                break;
            }
        resolveRemainder(state);
        state.lastCategoryScan = now();
        state.categoryProgress = 1;
    });
    measureRowsAgain(partlyGoneSinceBegin_);
}

void Storage::drop(const GonePaths &gone) {
    if (state().isMeasuringCategories)
        goneSinceBegin_.add(gone);
    if (!hasFigures())
        return;
    update([&](StorageState &state) {
        for (MeasuredCategory &one : state.categories)
            dropRows(one, gone);
        resolveRemainder(state);
    });
}

void Storage::measureAgain(const GonePaths &partlyGone) {
    if (state().isMeasuringCategories)
        partlyGoneSinceBegin_.add(partlyGone);
    measureRowsAgain(partlyGone);
}

void Storage::measureRowsAgain(const GonePaths &partlyGone) {
    std::vector<FileURL> rows;
    for (const MeasuredCategory &one : state().categories)
        for (const CleanupEntry &entry : one.entries)
            rows.push_back(entry.url);
    RowMeasuring::measureAgain(workers_, this, std::move(rows), partlyGone,
                               [this](const RowMeasuring::Rows &sizes) {
                                   drop(RowMeasuring::goneIn(sizes));
                                   update([&](StorageState &state) {
                                       for (MeasuredCategory &one : state.categories)
                                           updateRows(one, sizes);
                                       resolveRemainder(state);
                                   });
                               });
}

} // namespace brimvale
