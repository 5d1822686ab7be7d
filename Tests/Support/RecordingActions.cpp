#include "Support/RecordingActions.h"

#include "Platform/PrivilegedRemoval.h"

namespace brimvale::testing {

std::optional<FileError> RecordingActions::note(const char *verb, const FileURL &url,
                                                RemovalProgress *progress) {
    calls.push_back(verb + url.path());
    if (onItem)
        onItem(progress);
    const auto error = errors.find(url.path());
    return error == errors.end() ? std::nullopt : std::optional(error->second);
}

std::optional<FileError> RecordingActions::removeItem(const OpenedItem &item, RemovalProgress *progress) {
    return note("delete ", item.place().standardized(), progress);
}

Result<TrashedItem> RecordingActions::moveToTrash(const OpenedItem &item) {
    if (std::optional<FileError> error = note("trash ", item.place().standardized(), nullptr))
        return *std::move(error);
    return trashed;
}

Result<KeptReasons, PrivilegedRunError>
RecordingActions::removeAsAdministrator(const std::vector<ItemPin> &items) {
    std::vector<std::string> paths;
    for (const ItemPin &item : items)
        paths.push_back(item.place.standardized().path());
    if (std::optional<PrivilegedRunError> error = runAsAdministrator(removalCommand(paths)))
        return *std::move(error);
    return KeptReasons(items.size());
}

std::optional<PrivilegedRunError> RecordingActions::runAsAdministrator(const std::string &command) {
    calls.push_back("admin " + command);
    if (!privilegedRunError && onCommand)
        onCommand(command);
    return privilegedRunError;
}

Result<ProcessResult, PrivilegedRunError>
RecordingActions::runProgramAsAdministrator(const std::vector<std::string> &words) {
    std::string command;
    for (const std::string &word : words)
        command += (command.empty() ? "" : " ") + word;
    if (const std::optional<PrivilegedRunError> error = runAsAdministrator(command))
        return *error;
    return ProcessResult{.output = printed, .exitStatus = 0};
}

std::optional<ProcessResult> RecordingActions::runPackageManager(const std::string &program,
                                                                 const std::vector<std::string> &arguments,
                                                                 const std::function<bool()> &) {
    std::string command = program;
    for (const std::string &argument : arguments)
        command += " " + argument;
    calls.push_back("run " + command);
    if (onCommand)
        onCommand(command);
    return ProcessResult{.output = printed, .exitStatus = 0};
}

} // namespace brimvale::testing
