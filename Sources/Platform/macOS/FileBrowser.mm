#include "Platform/FileBrowser.h"

#import <AppKit/AppKit.h>

namespace brimvale {

const char *FileBrowser::revealTitle() {
    return "Reveal in Finder";
}

bool FileBrowser::reveal(const FileURL &item, const Tools & /*tools*/) {
    @autoreleasepool {
        NSURL *url = [NSURL fileURLWithFileSystemRepresentation:item.path().c_str()
                                                    isDirectory:NO
                                                  relativeToURL:nil];
        [NSWorkspace.sharedWorkspace activateFileViewerSelectingURLs:@[ url ]];
        return true;
    }
}

} // namespace brimvale
