#include "Platform/FileBrowser.h"

#include "Platform/macOS/NativeURL.h"

#import <AppKit/AppKit.h>

namespace brimvale {

const char *FileBrowser::revealTitle() {
    return "Reveal in Finder";
}

bool FileBrowser::reveal(const FileURL &item, const Tools & /*tools*/) {
    @autoreleasepool {
        // A Finder that selects a missing item opens nothing and reports nothing.
        NSURL *url = urlOf(item);
        if (![url checkResourceIsReachableAndReturnError:nil])
            return false;
        [NSWorkspace.sharedWorkspace activateFileViewerSelectingURLs:@[ url ]];
        return true;
    }
}

} // namespace brimvale
