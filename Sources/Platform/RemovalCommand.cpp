#include "Platform/PrivilegedRemoval.h"
#include "Platform/ShellQuoting.h"

namespace brimvale {

std::string removalCommand(const std::vector<std::string> &paths) {
    std::string command = "/bin/rm -rf --";
    for (const std::string &path : paths)
        command.append(" ").append(quotedForShell(path));
    return command;
}

} // namespace brimvale
