#include "Core/Model/Storage.h"

#include "Core/Model/RowMeasuring.h"
#include "Core/Model/Volumes.h"
#include "Core/Model/Workers.h"
#include "Core/Scan/Counter.h"
#include "Core/Storage/AdministratorSizes.h"
#include "Core/Storage/CleanupEntries.h"
#include "Core/Storage/StorageCategories.h"
#include "Core/Storage/StorageFigures.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <variant>

namespace brimvale {

namespace {

/// Sets a category's size after its rows have changed.
void addUp(MeasuredCategory &category) {
    if (category.category.measurement == CategoryMeasurement::measured)
        category.size = CleanupEntries::sizeHere(category.entries);
}

/// Drops removed rows from a category, and returns whether there were any.
bool dropRows(MeasuredCategory &category, const GonePaths &gone) {
    const auto dropped = std::erase_if(
        category.entries, [&](const CleanupEntry &entry) { return gone.contains(entry.url, entry.pin); });
    if (dropped > 0)
        addUp(category);
    return dropped > 0;
}

/// Gives those places of a category that were incomplete the rows of another measurement.
void replaceRows(MeasuredCategory &category, const std::vector<CleanupEntry> &rows) {
    for (const CleanupEntry &row : rows) {
        if (std::erase(category.incomplete, row.url.path()) == 0)
            continue;
        std::erase_if(category.entries, [&](const CleanupEntry &one) { return one.url == row.url; });
        if (row.size >= StorageCategories::smallestRow(category.category))
            category.entries.push_back(row);
    }
    CleanupEntries::sort(category.entries);
    addUp(category);
}

/// Gives the rows of a category their sizes as measured again, and drops those that have become too small.
bool updateRowsOf(MeasuredCategory &category, const RowMeasuring::Rows &sizes) {
    if (!RowMeasuring::update(sizes, category.entries, StorageCategories::smallestRow(category.category)))
        return false;
    addUp(category);
    return true;
}

/// Leaves System Data without figures, after a run that was stopped. Returns whether it had any.
bool clearRemainder(std::vector<MeasuredCategory> &categories) {
    bool hadFigures = false;
    for (MeasuredCategory &one : categories)
        if (one.category.measurement == CategoryMeasurement::remainder) {
            hadFigures = hadFigures || one.measured;
            one = {.category = one.category};
        }
    return hadFigures;
}

std::int64_t countMeasured(const std::vector<StorageCategory> &categories) {
    return std::count_if(categories.begin(), categories.end(), [](const StorageCategory &category) {
        return category.measurement == CategoryMeasurement::measured;
    });
}

} // namespace

/// What measuring finds besides the measured categories.
struct Storage::Remainder {
    StorageCategories::SystemDataRows rows;
    HiddenSpace hiddenSpace;
};

Storage::Storage(Workers &workers, Volumes &volumes, RemovalActions &actions, Definitions definitions)
    : Part({.categories = StorageFigures::unmeasured(definitions())}), workers_(workers), volumes_(volumes),
      actions_(actions), definitions_(std::move(definitions)),
      rowMeasuring_(
          workers, this, [this](const GonePaths &touched) { return rowsTouchedBy(touched); },
          [this](const RowMeasuring::Rows &sizes) { updateRows(sizes); }) {}

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
    return std::any_of(state().categories.begin(), state().categories.end(),
                       [](const MeasuredCategory &one) { return one.measured; });
}

/// Returns whether a figure has changed.
bool Storage::resolveRemainderIn(StorageState &state) const {
    return state.wasStopped ? clearRemainder(state.categories)
                            : StorageFigures::resolveRemainder(state.categories, volumes_.rootVolume());
}

void Storage::resolveRemainder() {
    if (hasFigures())
        update([this](StorageState &state) { return resolveRemainderIn(state); });
}

/// The volume whose space the categories divide.
std::optional<FileURL> Storage::measuredVolume() const {
    const std::optional<VolumeInfo> root = volumes_.rootVolume();
    return root ? std::optional(root->url) : std::nullopt;
}

void Storage::measureCategories() {
    if (state().isMeasuringCategories)
        return;
    goneSinceBegin_ = touchedSinceBegin_ = {};
    isTrashFilledSinceBegin_ = false;
    rowMeasuring_.forget();
    for (auto &one : listRuns_)
        one.second.forget();
    ++administratorRun_;
    volumes_.refreshVolumes();
    const std::vector<StorageCategory> all = definitions_();
    update([&](StorageState &state) {
        state.isMeasuringCategories = true;
        state.isMeasuringAsAdministrator = false;
        state.wasStopped = false;
        state.categoryProgress = 0;
        state.categories = StorageFigures::unmeasured(all);
    });
    stop_ = StopFlag();
    workers_.run(
        this,
        [this, context = QPointer<QObject>(this), all, volume = measuredVolume(), cancelled = stop_] {
            const auto completed = std::make_shared<Counter>();
            const auto total = static_cast<double>(countMeasured(all));
            const auto finished = [&](MeasuredCategory measured) {
                if (cancelled.isSet())
                    return; // its figures may be incomplete
                onMainThread(context, [this, measured = std::move(measured), completed, total]() mutable {
                    show(std::move(measured), static_cast<double>(completed->add(1)) / total);
                });
            };
            auto rows = StorageCategories::measureAll(all, finished, cancelled, Host::current(),
                                                      WalkPool::shared(), volume);
            const bool isLooking = volume && !cancelled.isSet();
            return Remainder{std::move(rows), isLooking ? HiddenSpace::on(*volume) : HiddenSpace{}};
        },
        [this](Remainder remainder) { finish(std::move(remainder)); });
}

std::vector<std::string> Storage::incompletePlaces() const {
    return StorageFigures::incompletePlaces(state().categories);
}

std::vector<std::string> Storage::hiddenSpaceSentences() const {
    return brimvale::hiddenSpaceSentences(state().hiddenSpace, volumes_.rootVolume(), volumes_->snapshots,
                                          incompletePlaces().size());
}

void Storage::measureAsAdministrator(const std::function<void(std::optional<PrivilegedRunError>)> &done) {
    const std::vector<std::string> places = incompletePlaces();
    if (places.empty() || state().isMeasuringCategories || state().isMeasuringAsAdministrator)
        return;
    goneSinceBegin_ = {};
    update([](StorageState &state) { state.isMeasuringAsAdministrator = true; });
    workers_.run(
        this,
        [places, volume = measuredVolume(), &actions = actions_] {
            return brimvale::measureAsAdministrator(places, volume, actions);
        },
        [this, done, run = ++administratorRun_](const auto &result) {
            if (run != administratorRun_)
                return;
            const auto *error = std::get_if<PrivilegedRunError>(&result);
            takeRows(error == nullptr ? std::get<std::vector<CleanupEntry>>(result)
                                      : std::vector<CleanupEntry>());
            done(error == nullptr ? std::nullopt : std::optional(*error));
        });
}

/// Shows what an administrator has measured, without the rows removed since.
void Storage::takeRows(const std::vector<CleanupEntry> &rows) {
    update([&](StorageState &state) {
        state.isMeasuringAsAdministrator = false;
        for (MeasuredCategory &one : state.categories) {
            replaceRows(one, rows);
            dropRows(one, goneSinceBegin_);
        }
        resolveRemainderIn(state);
    });
    goneSinceBegin_ = {};
}

/// Publishes a measured category, without the rows removed since measuring began.
void Storage::show(MeasuredCategory measured, double progress) {
    dropRows(measured, goneSinceBegin_);
    update([&](StorageState &state) {
        for (MeasuredCategory &one : state.categories)
            if (one.category.id == measured.category.id)
                one = measured;
        resolveRemainderIn(state);
        state.categoryProgress = progress;
    });
    rowMeasuring_.measureAgain(touchedSinceBegin_);
}

void Storage::finish(Remainder remainder) {
    update([&](StorageState &state) {
        state.isMeasuringCategories = false;
        state.wasStopped = stop_.isSet();
        if (state.wasStopped) {
            clearRemainder(state.categories);
            return;
        }
        for (MeasuredCategory &one : state.categories)
            if (one.category.measurement == CategoryMeasurement::remainder) {
                one.entries = std::move(remainder.rows.entries);
                one.incomplete = std::move(remainder.rows.incomplete);
                dropRows(one, goneSinceBegin_);
                break;
            }
        resolveRemainderIn(state);
        state.hiddenSpace = std::move(remainder.hiddenSpace);
        state.lastCategoryScan = now();
        state.categoryProgress = 1;
    });
    rowMeasuring_.measureAgain(touchedSinceBegin_);
    goneSinceBegin_ = touchedSinceBegin_ = {};
    if (isTrashFilledSinceBegin_)
        listTrashAgain();
}

void Storage::drop(const GonePaths &gone) {
    for (auto &one : listRuns_)
        one.second.repeat();
    if (state().isMeasuringCategories || state().isMeasuringAsAdministrator)
        goneSinceBegin_.add(gone);
    if (hasFigures())
        update([&](StorageState &state) {
            bool isChanged = false;
            for (MeasuredCategory &one : state.categories)
                isChanged = dropRows(one, gone) || isChanged;
            return resolveRemainderIn(state) || isChanged;
        });
    measureAgain(gone);
}

void Storage::listTrashAgain() {
    isTrashFilledSinceBegin_ = true;
    if (const MeasuredCategory *trash = category("trash"))
        listAgain(*trash);
}

/// Does nothing for a category without figures, or while all are measured.
void Storage::listAgain(const MeasuredCategory &listed) {
    if (state().isMeasuringCategories || !listed.measured)
        return;
    listRuns_[listed.category.id].start(
        workers_, this,
        [definition = listed.category, volume = measuredVolume(), cancelled = workers_.closing()] {
            return StorageCategories::measure(definition, cancelled, Host::current(), WalkPool::shared(),
                                              volume);
        },
        [this](MeasuredCategory measured) {
            if (!state().isMeasuringCategories)
                show(std::move(measured), state().categoryProgress);
        });
}

void Storage::readPlacesAgain(const GonePaths &places) {
    for (const MeasuredCategory &one : state().categories) {
        const std::vector<std::string> &roots = one.category.roots;
        const bool isShown = std::any_of(roots.begin(), roots.end(), [&](const std::string &root) {
            return one.category.listsContents && places.reachInto(FileURL(root));
        });
        if (isShown)
            listAgain(one);
    }
    measureAgain(places);
}

void Storage::measureAgain(const GonePaths &partlyGone) {
    if (state().isMeasuringCategories)
        touchedSinceBegin_.add(partlyGone);
    rowMeasuring_.measureAgain(partlyGone);
}

std::vector<FileURL> Storage::rowsTouchedBy(const GonePaths &items) const {
    std::vector<FileURL> rows;
    for (const MeasuredCategory &one : state().categories)
        for (const CleanupEntry &entry : one.entries)
            if (items.touch(entry.url, entry.pin))
                rows.push_back(entry.url);
    return rows;
}

void Storage::updateRows(const RowMeasuring::Rows &sizes) {
    update([&](StorageState &state) {
        bool isChanged = false;
        for (MeasuredCategory &one : state.categories)
            isChanged = updateRowsOf(one, sizes) || isChanged;
        return resolveRemainderIn(state) || isChanged;
    });
}

} // namespace brimvale
