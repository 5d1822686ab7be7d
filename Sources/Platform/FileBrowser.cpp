#include "Platform/FileBrowser.h"

#include "Base/Text.h"

namespace brimvale {

std::string FileBrowser::fileURI(const FileURL &item) {
    return "file://" + percentEncoded(item.path());
}

} // namespace brimvale
