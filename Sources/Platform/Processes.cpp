#include "Platform/Processes.h"

#include "Base/FileURL.h"
#include "Platform/Folder.h"

#include <string_view>

namespace brimvale {

std::vector<std::string> processesIn(const std::string &folder) {
    std::vector<std::string> processes;
    for (const std::string &name : namesIn(folder).value_or(std::vector<std::string>()))
        if (std::string_view(name).find_first_not_of("0123456789") == std::string_view::npos)
            processes.push_back(joinPath(folder, name));
    return processes;
}

} // namespace brimvale
