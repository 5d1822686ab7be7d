#include "Platform/Linux/ProgramName.h"

#include "Base/FileURL.h"
#include "Base/Text.h"
#include "Platform/FileContents.h"

#include <filesystem>
#include <string_view>
#include <system_error>

namespace brimvale {

std::string programName(const std::string &process) {
    constexpr std::size_t longestKernelName = 15; // longer ones are cut
    std::string name(trimmed(contentsOfFile(joinPath(process, "comm"), longestProcessFile).value_or("")));
    std::error_code error;
    const std::filesystem::path file = std::filesystem::read_symlink(joinPath(process, "exe"), error);
    const std::string whole = error ? "" : file.filename().native();
    const std::string_view uncut = std::string_view(whole).substr(0, whole.find(" (deleted)"));
    return name.size() == longestKernelName && uncut.starts_with(name) ? std::string(uncut) : name;
}

bool isProgram(const std::string &process) {
    return contentsOfFile(joinPath(process, "cmdline"), longestProcessFile) != "";
}

} // namespace brimvale
