#include "Core/Removal/RemovalReport.h"

#include "Base/Text.h"
#include "Core/Text/Formatting.h"

#include <cstddef>

namespace brimvale::RemovalReport {

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
    constexpr std::size_t shownOfMany = 4;
    const std::size_t count = result.failed.size();
    const std::size_t shown = count > shownOfMany ? shownOfMany : count;
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < shown; ++i)
        lines.push_back(failureLine(result.failed[i]));
    if (shown < count)
        lines.push_back("and " + std::to_string(count - shown) + " more.");
    return lines;
}

std::string trashRemark(std::int64_t bytes) {
    return "This frees about " + Fmt::byteFormatter(bytes) +
           ". Moving to Trash does not free space until the Trash is emptied.";
}

} // namespace brimvale::RemovalReport
