#include "Core/Model/Volumes.h"

#include "Core/Model/Workers.h"
#include "Core/Storage/Permissions.h"
#include "Platform/Host.h"

#include <chrono>
#include <utility>

namespace brimvale {

namespace {

/// For volumes that do not answer at once, because they are on a network or provided by another program.
constexpr std::chrono::seconds patienceForDistantVolumes{2};

} // namespace

Volumes::Volumes(Workers &workers, RemovalActions &actions, Reader read)
    : workers_(workers), actions_(actions), read_(std::move(read)) {
    refreshVolumes();
}

std::optional<VolumeInfo> Volumes::rootVolume() const {
    return VolumeInfo::root(state().volumes);
}

void Volumes::refreshVolumes() {
    update([this](VolumeState &state) {
        const VolumeState before = state;
        state.volumes = read_(VolumeInfo::beforePaint);
        state.hasFullDiskAccess = Permissions::hasFullDiskAccess();
        return state != before;
    });
    emit wereRead();
    struct Found {
        std::vector<VolumeInfo> volumes;
        std::vector<LocalSnapshot> snapshots;
    };
    workers_.run(
        this,
        [read = read_] {
            return Found{read(patienceForDistantVolumes), LocalSnapshot::list("/")};
        },
        [this, number = ++refreshes_](const Found &found) {
            if (number != refreshes_) // read before a later change
                return;
            update([&](VolumeState &state) {
                const VolumeState before = state;
                state.volumes = found.volumes;
                state.snapshots = found.snapshots;
                return state != before;
            });
            emit wereRead();
        });
}

void Volumes::deleteSnapshot(const LocalSnapshot &snapshot, const std::function<void(bool)> &done) {
    if (state().isDeletingSnapshot)
        return;
    update([](VolumeState &state) { state.isDeletingSnapshot = true; });
    workers_.run(
        this,
        [snapshot, &actions = actions_] {
            return brimvale::deleteSnapshot(snapshot, FileURL("/"), actions, Host::current());
        },
        [this, done](bool isDeleted) {
            update([](VolumeState &state) { state.isDeletingSnapshot = false; });
            refreshVolumes();
            done(isDeleted);
        });
}

} // namespace brimvale
