#include "Platform/Terminal.h"

#include "Platform/DetachedProcess.h"

namespace brimvale {

bool openTerminal(const FileURL &folder, const Tools &tools) {
    return !startDetached(tools.opener, {"-a", "Terminal", folder.path()});
}

} // namespace brimvale
