#include "Platform/FileBrowser.h"

#include "Platform/ProcessRunner.h"

namespace brimvale {

namespace {

/// The common interface of desktops:
/// https://www.freedesktop.org/wiki/Specifications/file-manager-interface
FileBrowser::Answer call(const std::string &method, const FileURL &item, const Tools &tools) {
    const std::optional<ProcessResult> result = runProcess(
        tools.busCaller,
        {"--session", "--print-reply", "--reply-timeout=5000", "--dest=org.freedesktop.FileManager1",
         "--type=method_call", "/org/freedesktop/FileManager1", "org.freedesktop.FileManager1." + method,
         "array:string:" + FileBrowser::fileURI(item), "string:"},
        StandardError::withOutput);
    if (!result)
        return FileBrowser::Answer::none;
    if (result->hasSucceeded())
        return FileBrowser::Answer::shown;
    const bool isSilent = result->output.find("org.freedesktop.DBus.Error.NoReply") != std::string::npos ||
                          result->output.find("org.freedesktop.DBus.Error.Timeout") != std::string::npos;
    return isSilent ? FileBrowser::Answer::silent : FileBrowser::Answer::none;
}

} // namespace

FileBrowser::Answer FileBrowser::reveal(const FileURL &item, const Tools &tools) {
    return call("ShowItems", item, tools);
}

FileBrowser::Answer FileBrowser::showProperties(const FileURL &item, const Tools &tools) {
    return call("ShowItemProperties", item, tools);
}

bool FileBrowser::canShowProperties(const Tools &tools) {
    return !tools.busCaller.empty();
}

} // namespace brimvale
