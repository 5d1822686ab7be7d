#pragma once

#include "Core/Model/Part.h"
#include "Core/Storage/LocalSnapshot.h"
#include "Core/Storage/VolumeInfo.h"

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
    /// Both must outlive it.
    Volumes(Workers &workers, RemovalActions &actions);

    /// The volume of the root file system, otherwise the first volume; nothing if there is none.
    [[nodiscard]] std::optional<VolumeInfo> rootVolume() const;

    /// Reads the volumes and the access probe again, and the snapshots in the background. Announces only
    /// changes.
    void refreshVolumes();

    /// Deletes a local snapshot as administrator and reads the volumes and snapshots again. Calls `done` with
    /// whether it was deleted. Does nothing while another snapshot is being deleted.
    void deleteSnapshot(const LocalSnapshot &snapshot, const std::function<void(bool)> &done);

signals:
    /// The deletion of a snapshot has ended, and the volumes have been read again.
    void snapshotDeletionEnded();

private:
    Workers &workers_;
    RemovalActions &actions_;
};

} // namespace brimvale
