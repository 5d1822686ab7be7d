#include "Core/Scan/UsualPath.h"

#include "Catalogs/Catalog.h"
#include "Platform/FileStatus.h"

namespace brimvale {

namespace {

bool areOneFolder(const std::string &a, const std::string &b) {
    const std::optional<FileIdentity> identity = folderIdentity(a);
    return identity && identity == folderIdentity(b);
}

} // namespace

FileURL usualPath(const FileURL &item, System system) {
    FileURL standardized = item.standardized();
    const JoinedFolders &joined = catalogOf(system).joinedFolders;
    if (joined.volume.empty() || !isAtOrUnder(standardized.path(), joined.volume))
        return standardized;
    for (const std::string &name : joined.names) {
        const std::string onVolume = joined.volume + name;
        if (isAtOrUnder(standardized.path(), onVolume) && areOneFolder(onVolume, name))
            return FileURL(standardized.path().substr(joined.volume.size())).standardized();
    }
    return standardized;
}

std::optional<std::string> pathOnJoinedVolume(const std::string &path, System system) {
    const JoinedFolders &joined = catalogOf(system).joinedFolders;
    for (const std::string &name : joined.names)
        if (isAtOrUnder(path, name))
            return joined.volume + path;
    return std::nullopt;
}

} // namespace brimvale
