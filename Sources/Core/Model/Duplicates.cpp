#include "Core/Model/Duplicates.h"

#include "Base/Bytes.h"
#include "Core/Duplicates/DuplicateEntries.h"
#include "Core/Duplicates/DuplicateSearch.h"
#include "Core/Model/Workers.h"

#include <algorithm>
#include <chrono>
#include <unordered_set>
#include <utility>

namespace brimvale {

namespace {

constexpr std::chrono::milliseconds progressInterval{100};

} // namespace

std::int64_t DuplicatesState::removableBytes() const {
    std::int64_t sum = 0;
    for (std::size_t i = 0; i < found.groups.size(); ++i)
        sum = checkedAdd(sum, found.groups[i].removableBytes(staying[i]));
    return sum;
}

Duplicates::Duplicates(Workers &workers) : workers_(workers) {
    connect(&timer_, &QTimer::timeout, this, &Duplicates::showProgress);
}

Duplicates::~Duplicates() {
    stop();
}

void Duplicates::search(const FileURL &folder, std::int64_t leastLength) {
    if (isBusy())
        return;
    progress_ = std::make_shared<DuplicateProgress>();
    goneSinceBegin_ = {};
    update([&](DuplicatesState &state) {
        state = {};
        state.folder = folder;
        state.isSearching = true;
    });
    timer_.start(progressInterval);
    workers_.run(
        this,
        [folder, leastLength, progress = progress_] {
            return findDuplicates({folder}, leastLength, ScanOptions::standard(), *progress);
        },
        [this](DuplicatesFound found) { show(std::move(found)); });
}

void Duplicates::stop() {
    if (state().isSearching)
        progress_->stats.cancel();
    stopSharing_.set();
}

void Duplicates::showProgress() {
    update([this](DuplicatesState &state) {
        const bool isSame = state.filesSeen == progress_->stats.files() &&
                            state.isReading == progress_->isReading && state.bytesRead == progress_->haveRead;
        state.filesSeen = progress_->stats.files();
        state.isReading = progress_->isReading;
        state.bytesToRead = progress_->toRead;
        state.bytesRead = progress_->haveRead;
        return !isSame;
    });
}

void Duplicates::show(DuplicatesFound found) {
    timer_.stop();
    progress_.reset();
    update([&](DuplicatesState &state) {
        state.staying.assign(found.groups.size(), 0);
        state.found = std::move(found);
        state.isSearching = false;
    });
    drop(std::exchange(goneSinceBegin_, {}));
}

void Duplicates::letStay(DuplicatePlace place) {
    update([&](DuplicatesState &state) {
        const bool changes = state.mayGo(place);
        if (changes)
            state.staying[place.group] = place.file;
        return changes;
    });
}

std::vector<CleanupEntry> Duplicates::entriesOf(const std::vector<DuplicatePlace> &places) const {
    std::vector<CleanupEntry> entries;
    for (const DuplicatePlace &place : places)
        if (state().mayGo(place))
            entries.push_back(
                entryToRemove(state().found.groups[place.group], place.file, state().staying[place.group]));
    return entries;
}

void Duplicates::share() {
    if (isBusy())
        return;
    stopSharing_ = StopFlag();
    update([](DuplicatesState &state) { state.isSharing = true; });
    workers_.run(
        this, [groups = state().found.groups, stopped = stopSharing_] { return shareSpace(groups, stopped); },
        [this](const SpaceSharing &done) {
            update([](DuplicatesState &state) { state.isSharing = false; });
            const std::unordered_set<FileURL> sharing(done.shared.begin(), done.shared.end());
            dropWhere([&](const DuplicateFile &file) { return sharing.contains(file.url); });
            emit shared(done);
        });
}

void Duplicates::drop(const GonePaths &gone) {
    if (state().isSearching)
        goneSinceBegin_.add(gone);
    if (!gone.isEmpty())
        dropWhere([&](const DuplicateFile &file) { return gone.contains(file.url, file.pin); });
}

/// Drops files, and groups with fewer than two others. Where the file that stays is dropped, the first of the
/// others does.
void Duplicates::dropWhere(const std::function<bool(const DuplicateFile &)> &isDropped) {
    update([&](DuplicatesState &state) {
        bool hasChanged = false;
        std::size_t kept = 0;
        std::vector<DuplicateGroup> &groups = state.found.groups;
        for (std::size_t i = 0; i < groups.size(); ++i) {
            const FileURL staying = groups[i].files[state.staying[i]].url;
            hasChanged = std::erase_if(groups[i].files, isDropped) > 0 || hasChanged;
            if (groups[i].files.size() < 2)
                continue;
            const auto found = std::find_if(groups[i].files.begin(), groups[i].files.end(),
                                            [&](const DuplicateFile &file) { return file.url == staying; });
            state.staying[kept] = found == groups[i].files.end()
                                      ? 0
                                      : static_cast<std::size_t>(found - groups[i].files.begin());
            if (kept != i)
                groups[kept] = std::move(groups[i]);
            ++kept;
        }
        groups.resize(kept);
        state.staying.resize(kept);
        return hasChanged;
    });
}

} // namespace brimvale
