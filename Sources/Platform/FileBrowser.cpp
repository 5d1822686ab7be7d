#include "Platform/FileBrowser.h"

#include "Base/Text.h"
#include "Platform/FileStatus.h"
#include "Platform/Folder.h"

namespace brimvale {

FileBrowser::Kind FileBrowser::kindOf(const FileURL &item) {
    const std::optional<FileStatus> status = fileStatus(item.path());
    if (!status)
        return Kind::gone;
    if (status->kind == FileKind::directory || Folder::at(item.path(), Folder::Links::follow).isOpen())
        return Kind::folder;
    return Kind::file;
}

std::string FileBrowser::fileURI(const FileURL &item) {
    return "file://" + percentEncoded(item.path());
}

} // namespace brimvale
