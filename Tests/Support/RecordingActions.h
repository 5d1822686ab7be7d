#pragma once

#include "Core/Removal/RemovalActions.h"

#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace brimvale::testing {

/// Removal as a test sees it: every call is noted, and nothing happens beyond what the test says.
class RecordingActions : public RemovalActions {
public:
    std::vector<std::string> calls; ///< "delete PATH", "trash PATH", "admin COMMAND", "run COMMAND"

    std::unordered_map<std::string, FileError> errors;          ///< by the item's path
    std::unordered_map<std::string, RemovalObstacle> obstacles; ///< by the item's path
    std::function<void(RemovalProgress *)> onItem;              ///< before an item is removed or trashed
    std::function<void(const std::string &)> onCommand;         ///< in the place of the administrator
    TrashedItem trashed = {};                                   ///< where each item goes
    std::string printed;                                        ///< by programs that run as administrator
    std::optional<PrivilegedRunError> privilegedRunError;       ///< instead of running the command

    /// Has what is at `path` need an administrator.
    void refuse(const std::string &path) {
        errors.emplace(path, FileError{FileError::Domain::cocoa, 513, "no", nullptr});
    }

    std::optional<FileError> removeItem(const OpenedItem &item, RemovalProgress *progress) override;
    RemovalObstacle obstacle(const FileURL &url) override { return obstacles[url.path()]; }
    Result<TrashedItem> moveToTrash(const OpenedItem &item) override;
    Result<KeptReasons, PrivilegedRunError> removeAsAdministrator(const std::vector<ItemPin> &items) override;
    std::size_t longestPrivilegedRemoval() override { return std::size_t{128} * 1024 - 1; }
    std::optional<PrivilegedRunError> runAsAdministrator(const std::string &command) override;
    Result<ProcessResult, PrivilegedRunError>
    runProgramAsAdministrator(const std::vector<std::string> &words) override;
    std::optional<ProcessResult> runPackageManager(const std::string &program,
                                                   const std::vector<std::string> &arguments,
                                                   const std::function<bool()> &isStopped) override;

private:
    std::optional<FileError> note(const char *verb, const FileURL &url, RemovalProgress *progress);
};

} // namespace brimvale::testing
