#include "Platform/FileBrowser.h"

#include "Platform/FileStatus.h"
#include "Platform/macOS/NativeURL.h"

#import <AppKit/AppKit.h>

namespace brimvale {

bool FileBrowser::reveal(const FileURL &item, const Tools & /*tools*/) {
    // A Finder that selects a missing item opens nothing and reports nothing.
    if (!fileStatus(item.path()))
        return false;
    @autoreleasepool {
        NSURL *url = urlOf(item);
        // AppKit promises nothing for other threads.
        dispatch_async(dispatch_get_main_queue(), ^{
          [NSWorkspace.sharedWorkspace activateFileViewerSelectingURLs:@[ url ]];
        });
    }
    return true;
}

} // namespace brimvale
