#include "Core/Apps/CommandRemoval.h"

#include "Base/Bytes.h"
#include "Base/Text.h"
#include "Base/VisibleText.h"
#include "Catalogs/Catalog.h"
#include "Core/Apps/AppInventory.h"
#include "Core/Apps/Uninstall.h"
#include "Core/Removal/Remover.h"
#include "Platform/FileAccess.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace brimvale {

namespace {

constexpr std::size_t longestLine = 300; // characters of a message are shown in one sentence

/// The file of a package manager's program; empty where it is not installed. The folders of the user's own
/// commands are not searched.
std::string programNamed(const std::string &name, const Host &host) {
    if (const std::optional<DesktopPlaces> places = catalogOf(host.system).desktopPlaces(host))
        for (const std::string &folder : places->packageCommands)
            if (std::string path = joinPath(folder, name); isReportedExecutable(path))
                return path;
    return "";
}

/// The last line that says something, harmless to show.
std::string lastLineOf(std::string_view output) {
    std::string_view rest = trimmed(output);
    const std::size_t start = rest.find_last_of("\r\n");
    std::string line = visibleText(trimmed(start == std::string_view::npos ? rest : rest.substr(start + 1)));
    return line.size() > longestLine ? displayText(line.substr(0, longestLine)) + "…" : line;
}

/// Why the command has not removed the application, as a sentence; nothing if it says that it has.
std::optional<std::string> commandFailure(const RemovedByCommand &command, const RemovalProgress &progress,
                                          RemovalActions &actions, const Host &host) {
    const std::string program = programNamed(command.program, host);
    if (program.empty())
        return "The program “" + command.program + "” is not installed.";
    if (progress.cancelled.isSet())
        return "It was stopped.";
    const std::optional<ProcessResult> result = actions.runPackageManager(
        program, command.arguments, [&progress] { return progress.cancelled.isSet(); });
    if (!result)
        return "The program “" + command.program + "” could not be started.";
    if (result->hasSucceeded())
        return std::nullopt;
    if (progress.cancelled.isSet())
        return "It was stopped.";
    const std::string line = lastLineOf(result->output);
    return line.empty() ? "“" + command.program + "” failed without a message."
                        : "“" + command.program + "” reports: " + line;
}

bool isInstalled(const InstalledApp &app, const Host &host) {
    const std::vector<InstalledApp> all = AppInventory::scan(true, host);
    return std::any_of(all.begin(), all.end(), [&](const InstalledApp &one) {
        return one.kind == app.kind && one.removal == app.removal;
    });
}

/// The result where the application stays: so do its files.
RemovalResult nothingRemoved(const CommandRemoval &removal, const std::string &reason) {
    RemovalResult result;
    result.failed.push_back({removal.app.url, reason});
    for (const CleanupEntry &leftover : removal.leftovers)
        result.failed.push_back({leftover.url, "It is kept because the app was not removed."});
    return result;
}

/// Removes the leftovers that are still there.
RemovalResult removeLeftovers(const CommandRemoval &removal, RemovalProgress &progress,
                              RemovalActions &actions) {
    std::vector<CleanupEntry> present;
    std::vector<FileURL> gone;
    for (const CleanupEntry &leftover : removal.leftovers)
        if (Remover::isGone(leftover.url))
            gone.push_back(leftover.url);
        else
            present.push_back(leftover);
    RemovalResult result = Remover::remove(present, removal.mode, &progress, actions);
    for (const FileURL &url : gone) {
        result.succeeded.push_back(url);
        result.remarks.push_back({url, "It was removed together with the app."});
    }
    return result;
}

} // namespace

RemovalResult removeByCommand(const CommandRemoval &removal, RemovalProgress &progress,
                              RemovalActions &actions, const Host &host) {
    const auto *command = std::get_if<RemovedByCommand>(&removal.app.removal);
    if (command == nullptr || !Uninstall::isRemovedByCommand(removal.app))
        return nothingRemoved(removal, "No command removes it.");
    std::optional<std::string> failure = commandFailure(*command, progress, actions, host);
    const bool isStillThere = isInstalled(removal.app, host);
    if (!failure && isStillThere)
        return nothingRemoved(removal, "“" + command->program +
                                           "” finished without an error, but the app is still there.");
    if (failure && isStillThere) {
        if (!progress.cancelled.isSet())
            failure->append(" Try this in a terminal: ").append(Uninstall::commandFor(removal.app));
        return nothingRemoved(removal, *failure);
    }
    RemovalResult result = removeLeftovers(removal, progress, actions);
    if (failure) {
        result.failed.insert(result.failed.begin(), {removal.app.url, *failure});
        result.goneAnyway.push_back(removal.app.url);
    } else {
        result.succeeded.insert(result.succeeded.begin(), removal.app.url);
        result.bytesFreed = checkedAdd(result.bytesFreed, removal.size);
        result.bytesDeleted = checkedAdd(result.bytesDeleted, removal.size);
    }
    return result;
}

} // namespace brimvale
