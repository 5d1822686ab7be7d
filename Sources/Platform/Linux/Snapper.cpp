#include "Platform/Linux/Snapper.h"

#include "Base/FileURL.h"
#include "Platform/FileStatus.h"
#include "Platform/ProcessRunner.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <ctime>
#include <optional>
#include <utility>

namespace brimvale {

namespace {

using Rows = std::vector<std::vector<std::string>>;

/// Snapper starts a service, which may have to measure first.
constexpr std::chrono::seconds snapperPatience{10};

constexpr std::size_t longestList = 16 * 1024 * 1024;

/// The table that Snapper prints for these arguments, without the titles; empty unless all have `columns`.
Rows tableOf(const Tools &tools, std::vector<std::string> arguments, std::size_t columns) {
    arguments.insert(arguments.begin(), {"--csvout", "--iso", "--utc"});
    const auto end = std::chrono::steady_clock::now() + snapperPatience;
    const std::optional<ProcessResult> result = runProcess(
        tools.snapper, arguments, StandardError::discarded,
        [&] { return std::chrono::steady_clock::now() > end; }, longestList);
    if (!result || !result->hasSucceeded())
        return {};
    Rows rows = rowsOfTable(result->output);
    const bool isWhole =
        std::all_of(rows.begin(), rows.end(), [&](const auto &row) { return row.size() == columns; });
    if (!isWhole || rows.empty())
        return {};
    rows.erase(rows.begin());
    return rows;
}

/// A name that is no option, whatever it is given to.
bool isPlainName(const std::string &name) {
    const auto isPlain = [](char sign) {
        return (sign >= '0' && sign <= '9') || (sign >= 'a' && sign <= 'z') || (sign >= 'A' && sign <= 'Z') ||
               sign == '_' || sign == '-' || sign == '.';
    };
    return !name.empty() && name.front() != '-' && std::all_of(name.begin(), name.end(), isPlain);
}

/// A number of a snapshot; 0 is the running system.
bool isSnapshotNumber(const std::string &number) {
    return !number.empty() && number.front() != '0' &&
           number.find_first_not_of("0123456789") == std::string::npos;
}

/// "2026-05-01 10:15:00" in UTC.
std::optional<Date> utcDate(const std::string &text) {
    std::tm civil{};
    const char *end = strptime(text.c_str(), "%Y-%m-%d %H:%M:%S", &civil);
    return end != nullptr && *end == '\0' ? std::optional(Date(std::chrono::seconds(timegm(&civil))))
                                          : std::nullopt;
}

std::optional<std::int64_t> bytesOf(const std::string &text) {
    std::int64_t bytes = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), bytes);
    const bool isWholeNumber =
        result.ec == std::errc() && result.ptr == text.data() + text.size() && bytes >= 0;
    return isWholeNumber ? std::optional(bytes) : std::nullopt;
}

std::vector<SnapperSnapshot> snapshotsOf(const Tools &tools, const std::string &configuration,
                                         const std::string &subvolume) {
    std::vector<SnapperSnapshot> snapshots;
    for (const auto &row : tableOf(
             tools,
             {"-c", configuration, "list", "--columns", "number,default,active,date,used-space,description"},
             6)) {
        const std::string &number = row[0];
        const bool isSystem = row[1] == "yes" || row[2] == "yes";
        if (!isSnapshotNumber(number) || isSystem)
            continue;
        snapshots.push_back({{.name = configuration + " " + number,
                              .date = utcDate(row[3]),
                              .tool = "Snapper",
                              .description = row[5],
                              .exclusiveBytes = bytesOf(row[4]),
                              .deletion = {tools.snapper, "-c", configuration, "delete", number}},
                             joinPath(subvolume, ".snapshots/" + number + "/snapshot")});
    }
    return snapshots;
}

} // namespace

std::vector<std::vector<std::string>> rowsOfTable(std::string_view text) {
    Rows rows;
    std::vector<std::string> row;
    std::string cell;
    bool isQuoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char sign = text[i];
        if (isQuoted && sign == '"' && text.substr(i + 1, 1) == "\"") {
            cell.push_back('"');
            ++i;
        } else if (sign == '"') {
            isQuoted = !isQuoted;
        } else if (!isQuoted && sign == ',') {
            row.push_back(std::exchange(cell, {}));
        } else if (!isQuoted && sign == '\n') {
            row.push_back(std::exchange(cell, {}));
            rows.push_back(std::exchange(row, {}));
        } else {
            cell.push_back(sign);
        }
    }
    return rows;
}

std::vector<SnapperSnapshot>
snapperSnapshots(const Tools &tools, const std::function<bool(const std::string &subvolume)> &isWanted) {
    std::vector<SnapperSnapshot> snapshots;
    if (tools.snapper.empty() || !fileStatus(tools.snapper))
        return snapshots;
    for (const auto &row : tableOf(tools, {"list-configs"}, 2))
        if (isPlainName(row[0]) && isWanted(row[1]))
            for (SnapperSnapshot &one : snapshotsOf(tools, row[0], row[1]))
                snapshots.push_back(std::move(one));
    return snapshots;
}

} // namespace brimvale
