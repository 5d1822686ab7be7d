#include "Core/Storage/LocalSnapshot.h"

#include "Base/Text.h"
#include "Core/Removal/RemovalActions.h"
#include "Core/Removal/Remover.h"
#include "Core/Text/Shell.h"
#include "Core/Text/SnapshotName.h"
#include "Platform/Confinement.h"
#include "Platform/FileStatus.h"
#include "Platform/Host.h"
#include "Platform/MainBundle.h"
#include "Platform/ProcessRunner.h"
#include "Platform/Snapshots.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <ctime>
#include <sstream>
#include <string_view>
#include <utility>
#include <variant>

namespace brimvale {

namespace {

/// The number in the `length` characters of `text` from `start` on; nothing unless all of them are digits.
std::optional<int> digits(std::string_view text, std::size_t start, std::size_t length) {
    const std::string_view part = text.substr(start, length);
    int number = 0;
    const auto result = std::from_chars(part.data(), part.data() + part.size(), number);
    const bool isNumber = part.front() != '-' && result.ec == std::errc() && result.ptr == part.end();
    return isNumber ? std::optional(number) : std::nullopt;
}

/// The moment for a text in the form "yyyy-MM-dd-HHmmss" in the current time zone.
std::optional<Date> localDate(std::string_view text) {
    if (text.size() != 17 || text[4] != '-' || text[7] != '-' || text[10] != '-')
        return std::nullopt;
    const auto year = digits(text, 0, 4), month = digits(text, 5, 2), day = digits(text, 8, 2),
               hour = digits(text, 11, 2), minute = digits(text, 13, 2), second = digits(text, 15, 2);
    if (!year || !month || !day || !hour || !minute || !second)
        return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year(*year),
                                           std::chrono::month(static_cast<unsigned>(*month)),
                                           std::chrono::day(static_cast<unsigned>(*day))};
    if (!date.ok() || *hour > 23 || *minute > 59 || *second > 59)
        return std::nullopt;
    std::tm civil{};
    civil.tm_year = *year - 1900;
    civil.tm_mon = *month - 1;
    civil.tm_mday = *day;
    civil.tm_hour = *hour;
    civil.tm_min = *minute;
    civil.tm_sec = *second;
    civil.tm_isdst = -1; // let the time zone decide for that day
    const std::time_t moment = std::mktime(&civil);
    constexpr std::time_t farthest = 9'000'000'000; // as far as nanoseconds reach
    if (moment < -farthest || moment > farthest)
        return std::nullopt;
    return Date(std::chrono::seconds(moment));
}

/// What Time Machine's tool lists.
std::vector<LocalSnapshot> timeMachineSnapshots(const std::string &volume, const Tools &tools) {
    std::vector<LocalSnapshot> snapshots;
    if (tools.tmutil.empty())
        return snapshots;
    std::istringstream lines(Shell::run(tools.tmutil, {"listlocalsnapshots", volume}).value_or(""));
    for (std::string line; std::getline(lines, line);) {
        const std::string name(trimmed(line));
        if (SnapshotName::isOne(name))
            snapshots.push_back({name, localDate(SnapshotName::stamp(name))});
    }
    return snapshots;
}

/// Where the program is from the folder of the installation.
constexpr std::string_view snapshotDeletionProgram = "libexec/brimvale/brimvale-delete-snapshot-as-root";

NamedSnapshot nameOf(const LocalSnapshot &snapshot, const std::string &volume) {
    const auto seconds = [](const Date &date) {
        return std::to_string(
            std::chrono::duration_cast<std::chrono::seconds>(date.time_since_epoch()).count());
    };
    return {volume, snapshot.name, snapshot.date ? seconds(*snapshot.date) : ""};
}

/// Whether a snapshot is one of this disk. A disk in a folder has those that its own tools list.
bool isOfThisDisk(const VolumeSnapshot &snapshot) {
    return !confinement() || (!snapshot.deletion.empty() && pathInConfinement(snapshot.deletion.front()));
}

std::vector<LocalSnapshot> snapshotsWithTools(const std::string &volume, const Tools &tools) {
    std::vector<LocalSnapshot> snapshots;
    for (VolumeSnapshot &one : volumeSnapshots(volume, tools)) {
        if (!isOfThisDisk(one))
            continue;
        snapshots.push_back({.name = std::move(one.name),
                             .date = one.date,
                             .tool = std::move(one.tool),
                             .description = one.description.empty()
                                                ? std::nullopt
                                                : std::optional(std::move(one.description)),
                             .exclusiveBytes = one.exclusiveBytes,
                             .deletion = std::move(one.deletion)});
    }
    return snapshots;
}

/// What deletes it when root runs it: a program of ours, for which polkit has a question of its own, or else
/// its tool. Ours knows only the tools of the platform.
std::vector<std::string> deletionAsRoot(const LocalSnapshot &snapshot, const FileURL &volume) {
    const FileURL program = mainBundle().url.parent().parent().appending(snapshotDeletionProgram);
    const Tools tools = platformTools();
    const std::string &tool = snapshot.deletion.front();
    if ((tool != tools.snapper && tool != tools.timeshift) || !fileStatus(program.path()))
        return snapshot.deletion;
    std::vector<std::string> words = nameOf(snapshot, volume.path()).arguments();
    words.insert(words.begin(), program.path());
    return words;
}

/// Whether it is listed as it was; what it would free may have changed.
bool isListed(const LocalSnapshot &snapshot, const FileURL &volume, const Host &host) {
    const std::vector<LocalSnapshot> listed = LocalSnapshot::list(volume.path(), host);
    return std::any_of(listed.begin(), listed.end(), [&](LocalSnapshot one) {
        one.exclusiveBytes = snapshot.exclusiveBytes;
        return one == snapshot;
    });
}

} // namespace

std::vector<LocalSnapshot> LocalSnapshot::list(const std::string &volume, const Host &host) {
    std::vector<LocalSnapshot> snapshots = host.system == System::macOS
                                               ? timeMachineSnapshots(volume, host.tools)
                                               : snapshotsWithTools(volume, host.tools);
    // A missing date sorts before every date.
    std::stable_sort(snapshots.begin(), snapshots.end(),
                     [](const LocalSnapshot &a, const LocalSnapshot &b) { return a.date > b.date; });
    return snapshots;
}

std::vector<LocalSnapshot> LocalSnapshot::list(const std::string &volume) {
    return list(volume, Host::current());
}

std::optional<NamedSnapshot> NamedSnapshot::fromArguments(const std::vector<std::string> &arguments) {
    if (arguments.size() != 3 || !arguments[0].starts_with('/') || arguments[1].empty())
        return std::nullopt;
    return NamedSnapshot{arguments[0], arguments[1], arguments[2]};
}

bool deleteSnapshotAsRoot(const NamedSnapshot &named, const Host &host) {
    for (const LocalSnapshot &one : LocalSnapshot::list(named.volume, host)) {
        if (one.deletion.empty() || nameOf(one, named.volume).arguments() != named.arguments())
            continue;
        const std::vector<std::string> options(one.deletion.begin() + 1, one.deletion.end());
        const auto run = runProcess(one.deletion.front(), options, StandardError::discarded);
        return run && run->hasSucceeded();
    }
    return false;
}

bool deleteSnapshot(const LocalSnapshot &snapshot, const FileURL &volume, RemovalActions &actions,
                    const Host &host) {
    if (!snapshot.tool)
        return Remover::deleteSnapshot(snapshot.name, volume, actions);
    // Its number may have been given to another one since it was shown.
    if (snapshot.deletion.empty() || !isListed(snapshot, volume, host))
        return false;
    const auto run = actions.runProgramAsAdministrator(deletionAsRoot(snapshot, volume));
    return std::holds_alternative<ProcessResult>(run) && !isListed(snapshot, volume, host);
}

std::optional<std::string> snapshotNote(std::size_t count) {
    if (count == 0)
        return std::nullopt;
    return std::to_string(count) + " snapshot" + (count == 1 ? "" : "s") +
           ". These hold on to deleted blocks and are the usual reason System Data grows and shrinks on its "
           "own.";
}

} // namespace brimvale
