#pragma once

#include "Core/Removal/RemovalActions.h"

namespace brimvale {

/// What a confined program may do: it removes only what is inside the folder of its confinement, and gets no
/// rights of the administrator. Programs on the disk in that folder run as this user instead.
class ConfinedActions final : public RemovalActions {
public:
    /// `platform` does what is allowed, and must outlive this object.
    explicit ConfinedActions(RemovalActions &platform) : platform_(platform) {}

    std::optional<FileError> removeItem(const OpenedItem &item, RemovalProgress *progress) override;
    RemovalObstacle obstacle(const FileURL &url) override { return platform_.obstacle(url); }
    /// On the disk of a Mac, into the folder ".Trash" of its home, also where the platform has another Trash.
    Result<TrashedItem> moveToTrash(const OpenedItem &item) override;
    Result<KeptReasons, PrivilegedRunError> removeAsAdministrator(const std::vector<ItemPin> &items) override;
    std::size_t longestPrivilegedRemoval() override { return platform_.longestPrivilegedRemoval(); }
    /// Only a snapshot is deleted like this; the disk's own tool gets the words of the command.
    std::optional<PrivilegedRunError> runAsAdministrator(const std::string &command) override;
    Result<ProcessResult, PrivilegedRunError>
    runProgramAsAdministrator(const std::vector<std::string> &words) override;
    std::optional<ProcessResult> runPackageManager(const std::string &program,
                                                   const std::vector<std::string> &arguments,
                                                   const std::function<bool()> &isStopped) override;
    void forgetTrashed(const FileURL &item) override { platform_.forgetTrashed(item); }
    std::optional<std::int64_t> freeSpace(const FileURL &folder) override {
        return platform_.freeSpace(folder);
    }
    bool awaitFreeSpace(const FileURL &folder) override { return platform_.awaitFreeSpace(folder); }
    void settle(const FileURL &folder) override { platform_.settle(folder); }

private:
    RemovalActions &platform_;
};

} // namespace brimvale
