#include "Platform/RunningApps.h"

#include "Platform/Bundle.h"
#include "Platform/FileReader.h"
#include "Platform/Processes.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <utility>

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
    for (const std::string &process : processesIn("/proc"))
        if (std::optional<std::string> program = linkTarget(process + "/exe"))
            programs.insert(*std::move(program));
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
