#include "Core/Apps/Linux/Packages.h"

#include "Platform/FileContents.h"

#include <algorithm>
#include <utility>

namespace brimvale::linuxApps {

namespace {

constexpr std::size_t mostApkBytes = std::size_t{256} << 20;

/// What the database says about one package. Its lines begin with a letter: "P:" is the name, "F:" a folder,
/// and "R:" a file in the last folder.
struct ApkRecord {
    Package package;
    std::string files; ///< one a line
};

ApkRecord recordIn(std::string_view paragraph) {
    ApkRecord record{.package = {.name = {}}, .files = {}};
    std::string_view folder;
    while (!paragraph.empty()) {
        const std::size_t end = std::min(paragraph.find('\n'), paragraph.size());
        const std::string_view value =
            paragraph.substr(std::min<std::size_t>(2, end), end - std::min<std::size_t>(2, end));
        switch (end > 1 && paragraph[1] == ':' ? paragraph[0] : '\0') {
        case 'P':
            record.package.name = value;
            break;
        case 'V':
            record.package.version = value;
            break;
        case 'I':
            record.package.size = sizeInBytes(value);
            break;
        case 'F':
            folder = value;
            break;
        case 'R':
            record.files.append(folder).append("/").append(value).append("\n");
            break;
        default:
            break;
        }
        paragraph.remove_prefix(std::min(end + 1, paragraph.size()));
    }
    return record;
}

} // namespace

Owners apkOwners(const WantedPaths &wanted, const std::string &database) {
    const std::string all = contentsOfFile(database, mostApkBytes).value_or("");
    Owners owners;
    for (std::size_t at = 0; at < all.size();) {
        const std::size_t end = std::min(all.find("\n\n", at), all.size());
        ApkRecord record = recordIn(std::string_view(all).substr(at, end - at));
        at = end + 2;
        record.package.removeCommand = "sudo apk del " + record.package.name;
        for (const std::string &path : wanted.in(record.files))
            if (!record.package.name.empty())
                owners.emplace(path, record.package);
    }
    return owners;
}

} // namespace brimvale::linuxApps
