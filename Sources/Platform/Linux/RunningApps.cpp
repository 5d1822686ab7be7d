#include "Platform/RunningApps.h"

#include "Platform/Bundle.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <unordered_set>

namespace brimvale {

namespace {

/// Adds the ancestors of a file that are named like bundles.
void addParentBundles(std::string_view file, std::unordered_set<std::string> &bundles) {
    constexpr std::string_view bundleEnd = ".app/";
    for (std::size_t at = file.find(bundleEnd); at != std::string_view::npos;
         at = file.find(bundleEnd, at + 1))
        bundles.emplace(file.substr(0, at + bundleEnd.size() - 1));
}

/// The bundles of running programs. Programs whose path this user may not read are missing.
std::unordered_set<std::string> runningBundles() {
    std::unordered_set<std::string> bundles;
    Folder processes = Folder::at("/proc", Folder::Links::follow);
    while (const char *name = processes.nextName()) {
        if (std::string_view(name).find_first_not_of("0123456789") != std::string_view::npos)
            continue;
        std::error_code error;
        const std::filesystem::path program =
            std::filesystem::read_symlink(std::string("/proc/") + name + "/exe", error);
        if (!error)
            addParentBundles(program.native(), bundles);
    }
    return bundles;
}

} // namespace

bool isApplicationRunning(const std::string &identifier) {
    const std::unordered_set<std::string> bundles = runningBundles();
    return std::any_of(bundles.begin(), bundles.end(), [&](const std::string &bundle) {
        const std::optional<BundleInfo> info = bundleInfo(FileURL(bundle));
        return info && info->identifier == identifier;
    });
}

} // namespace brimvale
