#include "Core/Removal/ConfinedActions.h"

#include "Base/Text.h"
#include "Platform/Confinement.h"
#include "Platform/FileOperation.h"
#include "Platform/FolderTrash.h"
#include "Platform/Host.h"
#include "Platform/ProcessRunner.h"

#include <cerrno>
#include <optional>
#include <string_view>

namespace brimvale {

namespace {

constexpr const char *noAdministrator = "The sample never asks for an administrator’s password.";

constexpr std::string_view snapshotCommand = "/usr/bin/tmutil deletelocalsnapshots ";

/// A program of the disk itself, which is a script that changes nothing outside it.
bool isOnThisDisk(const std::string &program) {
    const std::string path = FileURL::resolving(program, FileURL("/")).standardized().path();
    return path == program && pathInConfinement(path).has_value();
}

FileError outside(const OpenedItem &item, FileOperation operation) {
    return fileError(operation, item.place(), EXDEV);
}

} // namespace

std::optional<FileError> ConfinedActions::removeItem(const OpenedItem &item, RemovalProgress *progress) {
    if (!isWithinConfinement(item.ancestors()))
        return outside(item, FileOperation::remove);
    return platform_.removeItem(item, progress);
}

Result<TrashedItem> ConfinedActions::moveToTrash(const OpenedItem &item) {
    if (!isWithinConfinement(item.ancestors()))
        return outside(item, FileOperation::trash);
    if (const std::optional<FileURL> trash = folderTrash())
        return moveToFolderTrash(item, *trash);
    return platform_.moveToTrash(item);
}

Result<KeptReasons, PrivilegedRunError>
ConfinedActions::removeAsAdministrator(const std::vector<ItemPin> & /*items*/) {
    return PrivilegedRunError{noAdministrator};
}

std::optional<PrivilegedRunError> ConfinedActions::runAsAdministrator(const std::string &command) {
    if (!command.starts_with(snapshotCommand))
        return PrivilegedRunError{noAdministrator};
    const auto run = runProgramAsAdministrator(
        {Host::current().tools.tmutil, "deletelocalsnapshots", command.substr(snapshotCommand.size())});
    const auto *error = std::get_if<PrivilegedRunError>(&run);
    return error != nullptr ? std::optional(*error) : std::nullopt;
}

Result<ProcessResult, PrivilegedRunError>
ConfinedActions::runProgramAsAdministrator(const std::vector<std::string> &words) {
    if (words.empty() || !isOnThisDisk(words.front()))
        return PrivilegedRunError{noAdministrator};
    const std::optional<ProcessResult> result =
        runProcess(words.front(), {words.begin() + 1, words.end()}, StandardError::withOutput);
    if (!result)
        return PrivilegedRunError{"The program could not be started."};
    return *result;
}

std::optional<ProcessResult> ConfinedActions::runPackageManager(const std::string &program,
                                                                const std::vector<std::string> &arguments,
                                                                const std::function<bool()> &isStopped) {
    return isOnThisDisk(program) ? platform_.runPackageManager(program, arguments, isStopped) : std::nullopt;
}

} // namespace brimvale
