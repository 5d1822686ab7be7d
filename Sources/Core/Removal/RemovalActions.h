#pragma once

#include "Base/FileError.h"
#include "Platform/OpenedItem.h"
#include "Platform/PrivilegedRemoval.h"
#include "Platform/RemovalObstacle.h"
#include "Platform/RemovalProgress.h"
#include "Platform/Trash.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// Everything a removal does to the outside world. All destructive operations of the program go through one
/// such object, so a test can replace the platform's and see every call. Called from several threads, one
/// call at a time for each removal.
class RemovalActions {
public:
    virtual ~RemovalActions() = default;

    /// Deletes the item with all its contents.
    [[nodiscard]] virtual std::optional<FileError> removeItem(const OpenedItem &item,
                                                              RemovalProgress *progress) = 0;

    /// What keeps an item that may not be removed; changes nothing.
    [[nodiscard]] virtual RemovalObstacle obstacle(const FileURL &url) = 0;

    /// Moves the item into the user's Trash.
    [[nodiscard]] virtual Result<TrashedItem> moveToTrash(const OpenedItem &item) = 0;

    /// Deletes these items for good as administrator, after the system has asked for the password. Why items
    /// were kept, as far as that is known.
    [[nodiscard]] virtual Result<KeptReasons, PrivilegedRunError>
    removeAsAdministrator(const std::vector<ItemPin> &items) = 0;

    /// How long the shell command for the items of one such request may be, in bytes.
    [[nodiscard]] virtual std::size_t longestPrivilegedRemoval() = 0;

    /// Runs a shell command as administrator, after the system has asked for the password.
    [[nodiscard]] virtual std::optional<PrivilegedRunError>
    runAsAdministrator(const std::string &command) = 0;

    /// Runs a program, the first of these words, as administrator, after the system has asked for the
    /// password. What it printed and how it ended.
    [[nodiscard]] virtual Result<ProcessResult, PrivilegedRunError>
    runProgramAsAdministrator(const std::vector<std::string> &) {
        return PrivilegedRunError{};
    }

    /// Runs the program of a package manager, by absolute path, as this user; it asks for the rights that it
    /// needs itself. `isStopped` is asked on this thread about ten times a second, and ends it. Nothing when
    /// it cannot be started.
    [[nodiscard]] virtual std::optional<ProcessResult>
    runPackageManager(const std::string &, const std::vector<std::string> &, const std::function<bool()> &) {
        return std::nullopt;
    }

    /// Removes what the Trash still knows about the item at a path without links, which is gone.
    virtual void forgetTrashed(const FileURL &) {}

    /// The free bytes of the volume of a folder; nothing if they are not known. Changes nothing.
    [[nodiscard]] virtual std::optional<std::int64_t> freeSpace(const FileURL &) { return std::nullopt; }

    /// Waits until `freeSpace` includes what was deleted; false if that takes too long.
    [[nodiscard]] virtual bool awaitFreeSpace(const FileURL &) { return true; }

    /// Writes out what was deleted on the volume of a folder, so that `freeSpace` is final.
    virtual void settle(const FileURL &) {}

    /// The actions of the platform; without state.
    [[nodiscard]] static RemovalActions &platform();
};

} // namespace brimvale
