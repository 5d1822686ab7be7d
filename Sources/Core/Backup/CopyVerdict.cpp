#include "Core/Backup/CopyVerdict.h"

#include "Base/Text.h"
#include "Core/Text/Formatting.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace brimvale::CopyVerdict {

namespace {

/// The smallest share of its original that a good copy may have.
constexpr double leastShare = 0.98;

std::string tooShortReason(const ArchivedItem &item) {
    const std::string copy = Fmt::byteFormatter(std::max<std::int64_t>(item.copiedBytes, 0));
    return "The copy is " + copy + " against an original of " + Fmt::byteFormatter(item.originalBytes) + ".";
}

/// The displayed name of an entry: the item's name and the path in it.
std::string originalName(const ArchivedItem &item, const std::string &path) {
    const std::string name(item.source.fileName());
    return "“" + displayText(path.empty() ? name : joinPath(name, path)) + "”";
}

bool changedDuringCopy(const CopyComparison &comparison, const std::string &path, Date started) {
    const ListedEntry *entry = comparison.originals.find(path);
    return entry != nullptr && entry->record.modified >= started;
}

std::string listedRemark(const ArchivedItem &item, const std::vector<std::string> &paths,
                         const std::string &what, const std::string &became) {
    if (paths.size() == 1)
        return what + " of " + originalName(item, paths.front()) + " " + became + ".";
    return what + " of " + std::to_string(paths.size()) + " entries " + became + ", such as those of " +
           originalName(item, paths.front()) + ".";
}

} // namespace

bool isTooShort(std::int64_t originalBytes, std::int64_t copiedBytes) {
    return originalBytes >= 1 &&
           static_cast<double>(copiedBytes) < leastShare * static_cast<double>(originalBytes);
}

std::string causeIn(const std::string &words, const std::string &path) {
    const std::size_t mention = path.empty() ? std::string::npos : words.find(path);
    const std::size_t before = mention == std::string::npos ? std::string::npos : words.rfind('\n', mention);
    const std::size_t start = before == std::string::npos ? 0 : before + 1;
    std::string_view line = std::string_view(words).substr(start);
    line = line.substr(0, line.find('\n'));
    const std::size_t colon = line.rfind(": ");
    if (colon != std::string_view::npos)
        line.remove_prefix(colon + 2);
    while (line.ends_with('.') || line.ends_with(' '))
        line.remove_suffix(1);
    return displayText(line);
}

std::string differenceText(const ArchivedItem &item, const CopyComparison &comparison,
                           const CopyDifference &difference, const CopyRun &run) {
    using Kind = CopyDifference::Kind;
    const std::string name = originalName(item, difference.path);
    const std::string cause = run.hasFailed ? causeIn(run.words, difference.path) : "";
    const std::string end = cause.empty() ? "" : ": " + cause;
    switch (difference.kind) {
    case Kind::missing:
        return name + " was not copied" + end;
    case Kind::otherKind:
        return name + " was copied as something else" + end;
    case Kind::unreadable:
        return name + " could not be compared with its copy" + end;
    case Kind::otherContent:
        break;
    }
    if (cause.empty() && changedDuringCopy(comparison, difference.path, run.started))
        return name + " changed while it was copied";
    return name + " is not the same in the copy" + end;
}

std::optional<std::string> failure(const ArchivedItem &item, const CopyComparison &comparison,
                                   const CopyRun &run) {
    const std::vector<CopyDifference> &differing = comparison.differing;
    std::string reason;
    if (isTooShort(item.originalBytes, item.copiedBytes) && !(run.bytesDecide && differing.empty()))
        reason = tooShortReason(item);
    if (!differing.empty())
        reason +=
            (reason.empty() ? "" : " ") + differenceText(item, comparison, differing.front(), run) + ".";
    if (differing.size() > 1)
        reason += " " + std::to_string(differing.size() - 1) + " more are not the same.";
    return reason.empty() ? std::nullopt : std::optional(reason);
}

std::vector<std::string> remarks(const ArchivedItem &item, const CopyComparison &comparison,
                                 const CopyRun &run) {
    std::vector<std::string> remarks;
    const ListedEntry *itself = comparison.originals.find("");
    if (itself != nullptr && itself->record.kind == EntryKind::link)
        remarks.push_back(originalName(item, "") +
                          " is a link. The backup holds the link itself, not what it leads to.");
    if (run.hasFailed) {
        const std::string cause = causeIn(run.words, "");
        remarks.push_back("The copier reported an error with " + originalName(item, "") +
                          (cause.empty() ? "" : ": " + cause) + ".");
    }
    if (!comparison.otherModes.empty())
        remarks.push_back(listedRemark(item, comparison.otherModes, "Permissions or dates", "were not kept"));
    if (!comparison.lesserAttributes.empty())
        remarks.push_back(
            listedRemark(item, comparison.lesserAttributes, "Extended attributes", "were lost"));
    return remarks;
}

} // namespace brimvale::CopyVerdict
