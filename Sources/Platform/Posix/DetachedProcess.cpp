#include "Platform/DetachedProcess.h"

#include "Platform/Posix/ToolStart.h"

#include <fcntl.h>
#include <unistd.h>

namespace brimvale {

std::optional<FileError> startDetached(const std::string &executable,
                                       const std::vector<std::string> &arguments) {
    ToolStart tool(allSignals(), POSIX_SPAWN_SETSID);
    tool.discard(STDIN_FILENO, O_RDONLY);
    tool.discard(STDOUT_FILENO, O_WRONLY);
    tool.discard(STDERR_FILENO, O_WRONLY);
    pid_t child = 0;
    const int error = tool.run(executable, arguments, child);
    return error == 0 ? std::nullopt : std::optional(FileError::posix(error));
}

} // namespace brimvale
