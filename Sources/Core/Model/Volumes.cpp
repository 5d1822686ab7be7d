#include "Core/Model/Volumes.h"

#include "Core/Model/Workers.h"
#include "Core/Removal/Remover.h"
#include "Core/Storage/Permissions.h"

#include <chrono>

namespace brimvale {

namespace {

/// For volumes that do not answer at once, because they are on a network or provided by another program.
constexpr std::chrono::seconds patienceForDistantVolumes{2};

} // namespace

Volumes::Volumes(Workers &workers, RemovalActions &actions) : workers_(workers), actions_(actions) {
    refreshVolumes();
}

std::optional<VolumeInfo> Volumes::rootVolume() const {
    return VolumeInfo::root(state().volumes);
}

void Volumes::refreshVolumes() {
    update([](VolumeState &state) {
        const VolumeState before = state;
        state.volumes = VolumeInfo::current();
        state.hasFullDiskAccess = Permissions::hasFullDiskAccess();
        return state != before;
    });
    struct Found {
        std::vector<VolumeInfo> volumes;
        std::vector<LocalSnapshot> snapshots;
    };
    workers_.run(
        this,
        [] {
            return Found{VolumeInfo::current(patienceForDistantVolumes), LocalSnapshot::list("/")};
        },
        [this](const Found &found) {
            update([&](VolumeState &state) {
                const VolumeState before = state;
                state.volumes = found.volumes;
                state.snapshots = found.snapshots;
                return state != before;
            });
        });
}

void Volumes::deleteSnapshot(const LocalSnapshot &snapshot, const std::function<void(bool)> &done) {
    if (state().isDeletingSnapshot)
        return;
    update([](VolumeState &state) { state.isDeletingSnapshot = true; });
    workers_.run(
        this,
        [name = snapshot.name, &actions = actions_] {
            return Remover::deleteSnapshot(name, FileURL("/"), actions);
        },
        [this, done](bool isDeleted) {
            update([](VolumeState &state) { state.isDeletingSnapshot = false; });
            refreshVolumes();
            emit snapshotDeletionEnded();
            done(isDeleted);
        });
}

} // namespace brimvale
