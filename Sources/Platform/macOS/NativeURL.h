#pragma once

#include "Base/FileURL.h"

#import <Foundation/Foundation.h>
#include <string>

namespace brimvale {

/// The item as an NSURL, byte for byte, but without a trailing slash, which would follow a link. The item
/// need not exist.
[[nodiscard]] inline NSURL *urlOf(const FileURL &item) {
    std::string path = item.path();
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return [NSURL fileURLWithFileSystemRepresentation:path.c_str() isDirectory:NO relativeToURL:nil];
}

} // namespace brimvale
