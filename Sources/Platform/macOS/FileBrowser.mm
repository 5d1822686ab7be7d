#include "Platform/FileBrowser.h"

#include "Platform/FileStatus.h"
#include "Platform/macOS/NativeURL.h"

#import <AppKit/AppKit.h>

namespace brimvale {

bool FileBrowser::reveal(const FileURL &item, const Tools & /*tools*/) {
    // For a missing item the Finder opens nothing and reports no error.
    if (!fileStatus(item.path()))
        return false;
    @autoreleasepool {
        NSURL *url = urlOf(item);
        // AppKit is not documented as safe on other threads.
        dispatch_async(dispatch_get_main_queue(), ^{
          [NSWorkspace.sharedWorkspace activateFileViewerSelectingURLs:@[ url ]];
        });
    }
    return true;
}

} // namespace brimvale
