#pragma once

#include "Base/FileURL.h"

#import <Foundation/Foundation.h>

namespace brimvale {

/// The location of an item as Foundation has it, byte for byte. The item need not exist.
[[nodiscard]] inline NSURL *urlOf(const FileURL &item) {
    return [NSURL fileURLWithFileSystemRepresentation:item.path().c_str() isDirectory:NO relativeToURL:nil];
}

} // namespace brimvale
