#include "Platform/FileBrowser.h"

#include "Platform/ProcessRunner.h"

namespace brimvale {

bool FileBrowser::reveal(const FileURL &item, const Tools &tools) {
    // The common interface of desktops:
    // https://www.freedesktop.org/wiki/Specifications/file-manager-interface
    const std::optional<ProcessResult> result = runProcess(
        tools.busCaller,
        {"--session", "--print-reply", "--reply-timeout=5000", "--dest=org.freedesktop.FileManager1",
         "--type=method_call", "/org/freedesktop/FileManager1", "org.freedesktop.FileManager1.ShowItems",
         "array:string:" + fileURI(item), "string:"},
        StandardError::discarded);
    return result && result->exitStatus == 0;
}

} // namespace brimvale
