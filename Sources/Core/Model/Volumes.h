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

/// The mounted volumes, the local snapshots, and whether the program may read everything.
class Volumes : public Part<VolumeState> {
    Q_OBJECT

public:
    /// Both must outlive it.
    Volumes(Workers &workers, RemovalActions &actions);

    /// The root file system's volume, else the first, else nothing.
    [[nodiscard]] std::optional<VolumeInfo> rootVolume() const;

    /// Reads the volumes and the access probe again, and the snapshots in the background. Announced where
    /// anything is different.
    void refreshVolumes();

    /// Deletes a local snapshot as the administrator and reads the volumes and snapshots again. `done` is
    /// told whether it was deleted. Does nothing while another one is being deleted.
    void deleteSnapshot(const LocalSnapshot &snapshot, const std::function<void(bool)> &done);

signals:
    /// The deletion of a snapshot has ended and the volumes have been read again.
    void snapshotDeletionEnded();

private:
    Workers &workers_;
    RemovalActions &actions_;
};

} // namespace brimvale
