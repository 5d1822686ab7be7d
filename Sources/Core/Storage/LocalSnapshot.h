#pragma once

#include "Base/Date.h"
#include "Base/FileURL.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

class RemovalActions;
struct Host;

/// A local snapshot of a volume.
struct LocalSnapshot {
    std::string name;
    std::optional<Date> date; ///< nothing where it is not known
    // Nothing of this is known on a Mac.
    std::optional<std::string> tool = {}; ///< what made it: "Snapper", or "Btrfs" where that is unknown
    std::optional<std::string> description = {};     ///< the user's or the tool's words
    std::optional<std::int64_t> exclusiveBytes = {}; ///< what deleting only this one frees
    std::vector<std::string> deletion = {};          ///< the program and arguments that delete it, for root

    /// Whether `deleteSnapshot` can delete it.
    [[nodiscard]] bool canBeDeleted() const { return !tool || !deletion.empty(); }

    /// The local snapshots of the volume mounted at `volume`, newest first, those without a date last. Empty
    /// on any failure. Blocks while tools run.
    [[nodiscard]] static std::vector<LocalSnapshot> list(const std::string &volume, const Host &host);
    /// The same for the current host.
    [[nodiscard]] static std::vector<LocalSnapshot> list(const std::string &volume);

    friend bool operator==(const LocalSnapshot &, const LocalSnapshot &) = default;
};

/// What names a snapshot with a tool to the program that deletes it as root.
struct NamedSnapshot {
    std::string volume; ///< the absolute path where it is mounted
    std::string name;
    std::string seconds; ///< its date since 1970; empty where it has none

    [[nodiscard]] std::vector<std::string> arguments() const { return {volume, name, seconds}; }
    /// Nothing if these are other arguments.
    [[nodiscard]] static std::optional<NamedSnapshot>
    fromArguments(const std::vector<std::string> &arguments);
};

/// Deletes the snapshot that is listed under that name, with its tool. This program must run as root. False
/// where none is listed or its tool fails.
[[nodiscard]] bool deleteSnapshotAsRoot(const NamedSnapshot &named, const Host &host);

/// Deletes a snapshot of the volume mounted at `volume` as administrator. One with a tool must still be
/// listed as it was, and is deleted only by its tool. False on failure, also where it is still listed
/// afterwards.
[[nodiscard]] bool deleteSnapshot(const LocalSnapshot &snapshot, const FileURL &volume,
                                  RemovalActions &actions, const Host &host);

/// The note for this number of snapshots; nothing for 0.
[[nodiscard]] std::optional<std::string> snapshotNote(std::size_t count);

} // namespace brimvale
