#include "Core/Model/Cleanup.h"

#include "Core/Model/Workers.h"
#include "Core/Scan/Counter.h"
#include "Core/Storage/CleanupCatalog.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace brimvale {

namespace {

/// Returns whether anything was dropped.
bool dropEntries(CleanupTarget &target, const GonePaths &gone) {
    return std::erase_if(target.entries,
                         [&](const CleanupEntry &entry) { return gone.contains(entry.url, entry.pin); }) > 0;
}

} // namespace

Cleanup::Cleanup(Workers &workers)
    : Part({.cleanupTargets = CleanupCatalog::definitions()}), workers_(workers),
      rowMeasuring_(
          workers, this, [this](const GonePaths &touched) { return entriesTouchedBy(touched); },
          [this](const RowMeasuring::Rows &sizes) { updateEntries(sizes); }) {}

Cleanup::~Cleanup() {
    stop_.set();
}

void Cleanup::stopMeasuring() {
    if (state().isMeasuringCleanup)
        stop_.set();
}

void Cleanup::measureCleanup() {
    if (state().isMeasuringCleanup)
        return;
    goneSinceBegin_ = touchedSinceBegin_ = {};
    isTrashFilledSinceBegin_ = false;
    rowMeasuring_.forget();
    trashRun_.forget();
    update([](CleanupState &state) {
        state.isMeasuringCleanup = true;
        state.cleanupProgress = 0;
    });
    stop_ = StopFlag();
    workers_.run(
        this,
        [this, context = QPointer<QObject>(this), definitions = CleanupCatalog::definitions(),
         cancelled = stop_] {
            const auto completed = std::make_shared<Counter>();
            const auto total = static_cast<double>(definitions.size());
            const auto finished = [&](CleanupTarget measured) {
                if (cancelled.isSet())
                    return; // its entries may be incomplete
                onMainThread(context, [this, measured = std::move(measured), completed, total]() mutable {
                    show(std::move(measured), static_cast<double>(completed->add(1)) / total);
                });
            };
            CleanupCatalog::measureAll(definitions, finished, cancelled);
        },
        [this] {
            update([](CleanupState &state) {
                state.isMeasuringCleanup = false;
                state.cleanupProgress = 1;
            });
            goneSinceBegin_ = touchedSinceBegin_ = {};
            if (isTrashFilledSinceBegin_)
                listTrashAgain();
        });
}

/// Publishes a measured target, without the items removed since measuring began.
void Cleanup::show(CleanupTarget measured, double progress) {
    dropEntries(measured, goneSinceBegin_);
    update([&](CleanupState &state) {
        for (CleanupTarget &target : state.cleanupTargets)
            if (target.id == measured.id)
                target = measured;
        state.cleanupProgress = progress;
    });
    rowMeasuring_.measureAgain(touchedSinceBegin_);
}

void Cleanup::drop(const GonePaths &gone) {
    trashRun_.repeat();
    if (state().isMeasuringCleanup)
        goneSinceBegin_.add(gone);
    update([&](CleanupState &state) {
        bool hasDropped = false;
        for (CleanupTarget &target : state.cleanupTargets)
            hasDropped = dropEntries(target, gone) || hasDropped;
        return hasDropped;
    });
    measureAgain(gone);
}

void Cleanup::listTrashAgain() {
    isTrashFilledSinceBegin_ = true;
    const auto trash = std::find_if(state().cleanupTargets.begin(), state().cleanupTargets.end(),
                                    [](const CleanupTarget &one) { return one.id == "trash"; });
    if (state().isMeasuringCleanup || trash == state().cleanupTargets.end() || !trash->scanned)
        return;
    trashRun_.start(
        workers_, this,
        [definition = *trash, cancelled = workers_.closing()] {
            return CleanupCatalog::measure(definition, cancelled);
        },
        [this](CleanupTarget measured) {
            if (!state().isMeasuringCleanup)
                show(std::move(measured), state().cleanupProgress);
        });
}

void Cleanup::measureAgain(const GonePaths &partlyGone) {
    if (state().isMeasuringCleanup)
        touchedSinceBegin_.add(partlyGone);
    rowMeasuring_.measureAgain(partlyGone);
}

std::vector<FileURL> Cleanup::entriesTouchedBy(const GonePaths &items) const {
    std::vector<FileURL> entries;
    for (const CleanupTarget &target : state().cleanupTargets)
        for (const CleanupEntry &entry : target.entries)
            if (items.touch(entry.url, entry.pin))
                entries.push_back(entry.url);
    return entries;
}

void Cleanup::updateEntries(const RowMeasuring::Rows &sizes) {
    update([&](CleanupState &state) {
        bool isChanged = false;
        for (CleanupTarget &target : state.cleanupTargets)
            isChanged = RowMeasuring::update(sizes, target.entries) || isChanged;
        return isChanged;
    });
}

} // namespace brimvale
