#include "Platform/Linux/Timeshift.h"

#include "Base/FileURL.h"
#include "Platform/FileStatus.h"
#include "Platform/Folder.h"

#include <array>
#include <chrono>
#include <ctime>
#include <optional>
#include <string_view>

namespace brimvale {

namespace {

/// For copies of all files, and for snapshots of Btrfs.
constexpr std::array<std::string_view, 2> timeshiftFolders = {"timeshift/snapshots",
                                                              "timeshift-btrfs/snapshots"};

/// The moment in a name such as "2026-05-01_10-00-01", which is in local time.
std::optional<Date> dateOfName(const std::string &name) {
    std::tm civil{};
    civil.tm_isdst = -1;
    const char *end = strptime(name.c_str(), "%Y-%m-%d_%H-%M-%S", &civil);
    constexpr std::size_t length = std::string_view("2026-05-01_10-00-01").size();
    if (end == nullptr || *end != '\0' || name.size() != length)
        return std::nullopt;
    return Date(std::chrono::seconds(std::mktime(&civil)));
}

} // namespace

std::vector<VolumeSnapshot> timeshiftSnapshotsIn(const std::string &mountPoint, const Tools &tools) {
    const bool isInstalled = !tools.timeshift.empty() && fileStatus(tools.timeshift);
    std::vector<VolumeSnapshot> snapshots;
    for (const std::string_view folder : timeshiftFolders)
        for (const std::string &name :
             namesIn(joinPath(mountPoint, folder)).value_or(std::vector<std::string>()))
            if (const std::optional<Date> date = dateOfName(name)) {
                snapshots.push_back({.name = name, .date = date, .tool = "Timeshift"});
                if (isInstalled)
                    snapshots.back().deletion = {tools.timeshift, "--delete",  "--snapshot", name,
                                                 "--yes",         "--scripted"};
            }
    return snapshots;
}

std::string timeshiftNameOf(const std::string &path) {
    for (const std::string_view folder : timeshiftFolders) {
        const std::string inside = std::string(1, '/').append(folder).append(1, '/');
        const std::size_t at = path.find(inside);
        if (at == std::string::npos)
            continue;
        const std::string rest = path.substr(at + inside.size());
        const std::string name = rest.substr(0, rest.find('/'));
        return dateOfName(name) ? name : "";
    }
    return "";
}

} // namespace brimvale
