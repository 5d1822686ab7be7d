#include "Support/RecordingActions.h"

namespace brimvale::testing {

std::optional<FileError> RecordingActions::note(const char *verb, const FileURL &url,
                                                RemovalProgress *progress) {
    calls.push_back(verb + url.path());
    if (onItem)
        onItem(progress);
    const auto error = errors.find(url.path());
    return error == errors.end() ? std::nullopt : std::optional(error->second);
}

std::optional<FileError> RecordingActions::removeItem(const FileURL &url, RemovalProgress *progress) {
    return note("delete ", url, progress);
}

std::optional<FileError> RecordingActions::moveToTrash(const FileURL &url) {
    return note("trash ", url, nullptr);
}

std::optional<PrivilegedRunError> RecordingActions::runAsAdministrator(const std::string &command) {
    calls.push_back("admin " + command);
    if (!privilegedRunError && onCommand)
        onCommand(command);
    return privilegedRunError;
}

} // namespace brimvale::testing
