#pragma once

#include "Base/Date.h"
#include "Base/FileURL.h"
#include "Base/StopFlag.h"
#include "Catalogs/CleanupNotes.h"
#include "Core/Removal/RemovalGuards.h"
#include "Platform/Mounts.h"
#include "Platform/OpenedItem.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace brimvale {

/// Every item passes here before it is removed, whichever way. First its path is checked by the guards, then
/// the item is opened and compared with what was shown, and then its place on the disk is checked: by the
/// guards, and for volumes that are mounted inside it. Knows where the guarded folders are when it is made,
/// so make one for each removal.
class RemovalGate {
public:
    /// The item, opened; or why it is refused, as a sentence; or the errno of opening it, ESTALE where it is
    /// not what was shown.
    using Answer = std::variant<OpenedItem, std::string, int>;

    [[nodiscard]] Answer open(const FileURL &item, const std::optional<ItemPin> &shown) const;

    /// The same for another entry, at this path, of the folder of an item that was opened here before.
    [[nodiscard]] Answer openBeside(const OpenedItem &other, const FileURL &item) const;

    /// Why an item that was opened may not be deleted, as a sentence: it is or has a Btrfs subvolume, which
    /// would stop the deletion half-way. To the Trash it can go. Nothing if it may.
    [[nodiscard]] static std::optional<std::string> refusalToDelete(const OpenedItem &item);

    /// Why a target of Cleanup does not allow the removal of an item any more, as a sentence: it no longer is
    /// what the target takes, or a program needs it now; or why a duplicate may not go: it or the file that
    /// stays has changed; or it is not what a plan names. Nothing if it may be removed, perhaps also once
    /// `stopped` is set. Not thread-safe.
    [[nodiscard]] std::optional<std::string>
    refusalOfTarget(const OpenedItem &item, const CleanupNotes &notes, const StopFlag &stopped = {});

    /// Whether something may be put back at this place.
    [[nodiscard]] bool admits(const PlaceToPutBack &place) const;

    /// Nothing when the item may be removed as it is now, otherwise the reason as a sentence. An item that
    /// cannot be opened may be: its removal tells why that fails.
    [[nodiscard]] std::optional<std::string> refusal(const FileURL &item) const;

    /// The guards of the host, made at the first call for the whole run of the program.
    [[nodiscard]] static const RemovalGuards &guards();

private:
    [[nodiscard]] std::optional<std::string> placeRefusal(const OpenedItem &item) const;
    [[nodiscard]] std::vector<std::string> otherPathsOf(const std::string &path) const;
    [[nodiscard]] std::optional<std::string> mountRefusal(const OpenedItem &item) const;
    [[nodiscard]] bool isRunning(const std::shared_ptr<const ProgramSigns> &program);

    /// Whether a program was running, and when that was read.
    struct Running {
        bool is = false;
        Date read;
    };

    std::unique_ptr<MountPoints> mounts_ = std::make_unique<MountPoints>();
    RemovalGuards::Located guarded_ = guards().locate();
    std::map<std::shared_ptr<const ProgramSigns>, Running> running_;
};

} // namespace brimvale
