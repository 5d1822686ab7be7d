#include "Core/Backup/BackupPlan.h"

#include "Base/Text.h"
#include "Core/Text/Formatting.h"
#include "Platform/FileStatus.h"
#include "Platform/FileSystem.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <system_error>

namespace brimvale::BackupPlan {

namespace {

/// The folder itself, or its nearest existing ancestor.
FileURL nearestExisting(FileURL folder) {
    while (folder.path() != "/" && !fileStatus(folder.path()))
        folder = folder.parent();
    return folder;
}

/// The place with all links in its path resolved, as far as it exists.
std::string withoutLinks(const FileURL &place) {
    std::error_code error;
    const std::filesystem::path real = std::filesystem::weakly_canonical(place.path(), error);
    return error ? place.path() : real.native();
}

} // namespace

bool isSameName(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char one, char other) { return lowered(one) == lowered(other); });
}

bool holds(const FileURL &item, const FileURL &place) {
    const std::string_view name = item.fileName();
    if (name == "/" || name == "." || name == "..")
        return true;
    const FileURL outer = item.standardized();
    if (isAtOrUnder(place.standardized().path(), outer.path()))
        return true;
    // A link given as an item is copied as a link, and contains nothing.
    const FileURL folder(withoutLinks(outer.parent()));
    return isAtOrUnder(withoutLinks(place), folder.appending(name).path());
}

std::optional<std::string> refusal(const std::vector<FileURL> &items, const FileURL &root) {
    for (auto item = items.begin(); item != items.end(); ++item) {
        const std::string name = displayText(item->fileName());
        if (holds(*item, root))
            return "“" + name + "” can’t be backed up into a folder inside itself.";
        const bool isRepeated = std::any_of(items.begin(), item, [&](const FileURL &earlier) {
            return isSameName(earlier.fileName(), item->fileName());
        });
        if (isRepeated)
            return "Two of the items are named “" + name +
                   "”. Back them up separately, each with its own label.";
    }
    return std::nullopt;
}

std::optional<Shortage> shortage(const std::vector<FileURL> &items, std::int64_t neededBytes,
                                 const FileURL &root) {
    const FileURL folder = nearestExisting(root);
    std::error_code error;
    const std::filesystem::space_info space = std::filesystem::space(folder.path(), error);
    if (error)
        return std::nullopt;
    constexpr std::uintmax_t most = std::numeric_limits<std::int64_t>::max();
    const auto available = static_cast<std::int64_t>(std::min(space.available, most));
    const bool areCloned = std::all_of(items.begin(), items.end(), [&](const FileURL &item) {
        return copiesShareBlocks(item.path(), folder.path());
    });
    if (neededBytes <= available || areCloned)
        return std::nullopt;
    return Shortage{neededBytes, available};
}

std::string sentence(const Shortage &shortage) {
    return "The backup needs " + Fmt::byteFormatter(shortage.needed) + ", but only " +
           Fmt::byteFormatter(shortage.available) + " are free there.";
}

} // namespace brimvale::BackupPlan
