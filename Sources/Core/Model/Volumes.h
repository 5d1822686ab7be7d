#pragma once

#include "Core/Model/Part.h"
#include "Core/Storage/LocalSnapshot.h"
#include "Core/Storage/VolumeInfo.h"

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

namespace brimvale {

class RemovalActions;
class Workers;

struct VolumeState {
    std::vector<VolumeInfo> volumes;
    std::vector<LocalSnapshot> snapshots; ///< of the root volume
    bool hasFullDiskAccess = false;
    bool isDeletingSnapshot = false;

    friend bool operator==(const VolumeState &, const VolumeState &) = default;
};

/// The mounted volumes, the local snapshots, and whether the program has full access to the disk.
class Volumes : public Part<VolumeState> {
    Q_OBJECT

public:
    /// Reads the mounted volumes; waits at most that long.
    using Reader = std::function<std::vector<VolumeInfo>(std::chrono::milliseconds)>;

    /// `workers` and `actions` must outlive it. `read` is called on any thread.
    Volumes(Workers &workers, RemovalActions &actions, Reader read);

    /// The volume of the root file system, otherwise the first volume; nothing if there is none.
    [[nodiscard]] std::optional<VolumeInfo> rootVolume() const;

    /// Reads the volumes and the access probe again, and the snapshots in the background. Announces only
    /// changes.
    void refreshVolumes();

    /// Deletes a local snapshot as administrator and reads the volumes and snapshots again. Calls `done` with
    /// whether it was deleted. Does nothing while another snapshot is being deleted.
    void deleteSnapshot(const LocalSnapshot &snapshot, const std::function<void(bool)> &done);

signals:
    /// Emitted after `changed` each time the volumes have been read, even if nothing has changed: every
    /// figure that comes from them follows.
    void wereRead();

private:
    Workers &workers_;
    RemovalActions &actions_;
    Reader read_;
    int refreshes_ = 0; ///< to know the latest one
};

} // namespace brimvale
