#include "Core/Apps/Linux/Packages.h"

#include "Base/FileURL.h"
#include "Base/Text.h"
#include "Platform/FileContents.h"
#include "Platform/Folder.h"

#include <algorithm>

namespace brimvale::linuxApps {

namespace {

constexpr std::size_t mostSizeBytes = 1024;

/// Where the version begins in "qt-creator-15.0.1-r1": after the last dash with a digit behind it that is not
/// of a revision.
std::size_t startOfVersion(std::string_view name) {
    std::size_t start = name.size();
    for (std::size_t at = name.find('-'); at != std::string_view::npos; at = name.find('-', at + 1))
        if (at + 1 < name.size() && name[at + 1] >= '0' && name[at + 1] <= '9')
            start = at + 1;
    return start;
}

/// The package in a folder such as "dev-qt/qt-creator-15.0.1-r1".
Package portagePackage(const std::string &category, const std::string &folder, std::string_view size) {
    const std::size_t start = startOfVersion(folder);
    Package package{.name = category + '/' + folder.substr(0, start == folder.size() ? start : start - 1),
                    .version = folder.substr(start),
                    .size = sizeInBytes(trimmed(size))};
    // This also takes it from the list of what the user wants, and leaves it if another package needs it.
    package.removeCommand = "sudo emerge --ask --depclean " + package.name;
    return package;
}

/// Puts the parts of lines such as "obj /usr/bin/tool MD5 SECONDS" on lines of their own.
void linesOfParts(std::string &contents) {
    std::replace(contents.begin(), contents.end(), ' ', '\n');
}

} // namespace

Owners portageOwners(const WantedPaths &wanted, const std::string &folder) {
    std::vector<std::string> lists;
    for (const std::string &category : namesIn(folder).value_or(std::vector<std::string>()))
        for (const std::string &name :
             namesIn(joinPath(folder, category)).value_or(std::vector<std::string>()))
            if (!name.starts_with('-')) // left by a merge that was stopped
                lists.push_back(joinPath(folder, category).append("/").append(name).append("/CONTENTS"));
    Owners owners;
    for (const auto &[path, list] : listsWith(wanted, std::move(lists), linesOfParts)) {
        const FileURL place = FileURL(list).parent();
        owners.emplace(
            path, portagePackage(std::string(place.parent().fileName()), std::string(place.fileName()),
                                 contentsOfFile(joinPath(place.path(), "SIZE"), mostSizeBytes).value_or("")));
    }
    return owners;
}

} // namespace brimvale::linuxApps
