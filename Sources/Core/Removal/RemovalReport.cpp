#include "Core/Removal/RemovalReport.h"

#include "Base/Text.h"
#include "Core/Text/Formatting.h"
#include "Platform/FileSystem.h"
#include "Platform/Host.h"

#include <algorithm>
#include <cstddef>
#include <unordered_set>

namespace brimvale::RemovalReport {

namespace {

/// A line for each item. Of five or more only the first four, and a last line with the number of the others.
template<class Item>
std::vector<std::string> firstLines(const std::vector<Item> &items, std::string (*line)(const Item &)) {
    constexpr std::size_t shownOfMany = 4;
    const std::size_t shown = std::min(items.size(), shownOfMany);
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < shown; ++i)
        lines.push_back(line(items[i]));
    if (shown < items.size())
        lines.push_back("and " + std::to_string(items.size() - shown) + " more.");
    return lines;
}

} // namespace

std::string_view title(const RemovalResult &result) {
    if (result.isOfBackup)
        return "The backup failed";
    return result.failed.empty() ? "Done" : "Finished with problems";
}

std::string summary(const RemovalResult &result) {
    if (result.isOfBackup)
        return "Nothing was deleted.";
    const std::size_t count = result.succeeded.size();
    return "Removed " + std::to_string(count) + " item" + (count == 1 ? "" : "s") + ", reclaiming " +
           Fmt::byteFormatter(result.bytesFreed);
}

std::string failureLine(const RemovalResult::Failure &failure) {
    const std::string path = displayText(failure.url.path());
    return failure.reason.starts_with(path + " ") ? failure.reason : path + ": " + failure.reason;
}

std::vector<std::string> failureLines(const RemovalResult &result) {
    return firstLines(result.failed, failureLine);
}

std::string partLine(const PartialRemoval &part) {
    return "“" + displayText(part.url.fileName()) +
           "” was partly deleted: " + Fmt::count(part.entriesRemoved) + " of " +
           Fmt::count(part.entriesInAll) + " items are gone, " + Fmt::byteFormatter(part.bytesFreed) +
           " freed";
}

std::vector<std::string> partLines(const RemovalResult &result) {
    return firstLines(result.partlyRemoved, partLine);
}

std::vector<std::string> remarkLines(const RemovalResult &result) {
    return firstLines(result.remarks, failureLine);
}

std::string trashRemark(std::int64_t bytes) {
    return "This frees about " + Fmt::byteFormatter(bytes) +
           ". Moving to Trash does not free space until the Trash is emptied.";
}

bool freesAtMost(const std::vector<CleanupEntry> &items) {
    if (Host::currentSystem() != platformSystem())
        return false;
    std::unordered_set<std::string> folders;
    for (const CleanupEntry &item : items)
        folders.insert(item.url.parent().path());
    return mayShareBlocks({folders.begin(), folders.end()});
}

} // namespace brimvale::RemovalReport
