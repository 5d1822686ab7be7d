#pragma once

#include "Base/FileURL.h"

#import <Foundation/Foundation.h>
#include <string>

namespace brimvale {

/// The location of an item as Foundation has it, byte for byte, but without a slash at its end, which would
/// lead through a link. The item need not exist.
[[nodiscard]] inline NSURL *urlOf(const FileURL &item) {
    std::string path = item.path();
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return [NSURL fileURLWithFileSystemRepresentation:path.c_str() isDirectory:NO relativeToURL:nil];
}

} // namespace brimvale
