#include "Core/Model/Cleanup.h"

#include "Core/Model/RowMeasuring.h"
#include "Core/Model/Workers.h"
#include "Core/Scan/Counter.h"
#include "Core/Storage/CleanupCatalog.h"

#include <memory>
#include <utility>

namespace brimvale {

namespace {

/// Returns whether anything was dropped.
bool dropEntries(CleanupTarget &target, const GonePaths &gone) {
    return std::erase_if(target.entries,
                         [&](const CleanupEntry &entry) { return gone.contains(entry.url); }) > 0;
}

} // namespace

Cleanup::Cleanup(Workers &workers)
    : Part({.cleanupTargets = CleanupCatalog::definitions()}), workers_(workers) {}

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
    goneSinceBegin_ = partlyGoneSinceBegin_ = {};
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
    measureRowsAgain(partlyGoneSinceBegin_);
}

void Cleanup::drop(const GonePaths &gone) {
    if (state().isMeasuringCleanup)
        goneSinceBegin_.add(gone);
    update([&](CleanupState &state) {
        bool hasDropped = false;
        for (CleanupTarget &target : state.cleanupTargets)
            hasDropped = dropEntries(target, gone) || hasDropped;
        return hasDropped;
    });
}

void Cleanup::measureAgain(const GonePaths &partlyGone) {
    if (state().isMeasuringCleanup)
        partlyGoneSinceBegin_.add(partlyGone);
    measureRowsAgain(partlyGone);
}

void Cleanup::measureRowsAgain(const GonePaths &partlyGone) {
    std::vector<FileURL> rows;
    for (const CleanupTarget &target : state().cleanupTargets)
        for (const CleanupEntry &entry : target.entries)
            rows.push_back(entry.url);
    RowMeasuring::measureAgain(workers_, this, std::move(rows), partlyGone,
                               [this](const RowMeasuring::Rows &sizes) {
                                   drop(RowMeasuring::goneIn(sizes));
                                   update([&](CleanupState &state) {
                                       for (CleanupTarget &target : state.cleanupTargets)
                                           for (CleanupEntry &entry : target.entries)
                                               RowMeasuring::update(sizes, entry.url, entry.size, entry.pin);
                                   });
                               });
}

} // namespace brimvale
