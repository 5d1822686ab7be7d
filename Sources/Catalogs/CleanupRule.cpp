#include "Catalogs/CleanupRule.h"

#include "Base/Date.h"
#include "Base/FileURL.h"
#include "Platform/FileAccess.h"
#include "Platform/FileReader.h"
#include "Platform/FileStatus.h"
#include "Platform/Folder.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

namespace brimvale {

namespace {

/// A folder with more entries counts as changed just now: nobody waits for a look at all of them.
constexpr std::size_t mostEntriesLookedAt = 20'000;

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

bool fitsAny(std::string_view name, const std::vector<std::string> &patterns) {
    return std::any_of(patterns.begin(), patterns.end(),
                       [&](const std::string &pattern) { return fitsPattern(name, pattern); });
}

bool isOlder(const FileStatus &status, Date limit) {
    return status.modified && *status.modified < limit;
}

/// Whether this is what programs talk through, such as a socket: it is not changed while they use it.
bool isForTalking(const std::string &path, const FileStatus &status) {
    return status.kind == FileKind::other && !linkTarget(path);
}

/// Whether neither the item nor anything inside it was changed after the limit. Not where a folder inside
/// cannot be read, or programs may talk through something.
bool isUntouchedSince(const std::string &path, Date limit) {
    const std::optional<FileStatus> status = fileStatus(path);
    if (!status || !isOlder(*status, limit) || isForTalking(path, *status))
        return false;
    std::vector<std::string> waiting;
    if (status->kind == FileKind::directory)
        waiting.push_back(path);
    std::size_t seen = 0;
    while (!waiting.empty()) {
        const std::string folder = std::exchange(waiting.back(), {});
        waiting.pop_back();
        const std::optional<std::vector<std::string>> names = namesIn(folder);
        if (!names || (seen += names->size()) > mostEntriesLookedAt)
            return false;
        for (const std::string &name : *names) {
            std::string inside = joinPath(folder, name);
            const std::optional<FileStatus> one = fileStatus(inside);
            if (!one || !isOlder(*one, limit) || isForTalking(inside, *one))
                return false;
            if (one->kind == FileKind::directory)
                waiting.push_back(std::move(inside));
        }
    }
    return true;
}

std::string withoutLinks(const std::string &folder) {
    std::error_code error;
    std::string real = std::filesystem::canonical(folder, error).native();
    return error ? folder : real;
}

} // namespace

bool fitsPattern(std::string_view name, std::string_view pattern) {
    std::size_t at = 0, in = 0;
    std::optional<std::pair<std::size_t, std::size_t>> star; // after it in the pattern; where it may end next
    while (at < name.size()) {
        if (in < pattern.size() && pattern[in] == '*') {
            star = {++in, at};
        } else if (in < pattern.size() &&
                   (pattern[in] == '#' ? isDigit(name[at]) : pattern[in] == name[at])) {
            ++in;
            ++at;
        } else if (star) {
            in = star->first;
            at = ++star->second;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', in) == std::string_view::npos;
}

bool allowsName(const CleanupRule &rule, std::string_view name) {
    return (rule.takes.empty() || fitsAny(name, rule.takes)) && !fitsAny(name, rule.leaves);
}

bool allowsItem(const CleanupRule &rule, const std::string &path) {
    const FileURL url(path);
    const std::string parent = withoutLinks(url.parent().path()), folder = withoutLinks(rule.folder);
    const bool isInPlace = rule.isDeep ? isAtOrUnder(parent, folder) : parent == folder;
    if (!isInPlace || !allowsName(rule, url.fileName()) || (rule.ownFilesOnly && !isOwnItem(path)))
        return false;
    return rule.leastDays == 0 || isUntouchedSince(path, now() - std::chrono::days(rule.leastDays));
}

} // namespace brimvale
