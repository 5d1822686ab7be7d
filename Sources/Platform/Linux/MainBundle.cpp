#include "Platform/MainBundle.h"

#include <filesystem>
#include <system_error>

namespace brimvale {

MainBundle mainBundle() {
    std::error_code error;
    const std::filesystem::path executable = std::filesystem::read_symlink("/proc/self/exe", error);
    return {.url = FileURL(error ? "/" : executable.native()),
            .identifier = std::nullopt,
            .version = BRIMVALE_VERSION,
            .build = BRIMVALE_BUILD};
}

bool canInstallItself() {
    return false;
}

} // namespace brimvale
