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

/// The files of running programs. Those whose path this user may not read are missing.
std::unordered_set<std::string> runningPrograms() {
    std::unordered_set<std::string> programs;
    Folder processes = Folder::at("/proc", Folder::Links::follow);
    while (const char *name = processes.nextName()) {
        if (std::string_view(name).find_first_not_of("0123456789") != std::string_view::npos)
            continue;
        std::error_code error;
        const std::filesystem::path program =
            std::filesystem::read_symlink(std::string("/proc/") + name + "/exe", error);
        if (!error)
            programs.insert(program.native());
    }
    return programs;
}

/// Whether a program file has the name of an application. Some makers start the real program, which has this
/// ending, from a script.
bool isNamed(std::string_view program, std::string_view application) {
    const std::string_view name = program.substr(program.rfind('/') + 1);
    return name == application || name == std::string(application) + "-bin";
}

} // namespace

bool isApplicationRunning(const std::string &identifier) {
    std::unordered_set<std::string> bundles;
    for (const std::string &program : runningPrograms()) {
        if (isNamed(program, identifier))
            return true;
        addParentBundles(program, bundles);
    }
    return std::any_of(bundles.begin(), bundles.end(), [&](const std::string &bundle) {
        const std::optional<BundleInfo> info = bundleInfo(FileURL(bundle));
        return info && info->identifier == identifier;
    });
}

} // namespace brimvale
