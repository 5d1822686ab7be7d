#include "Platform/FileBrowser.h"

#include "Platform/FileStatus.h"
#include "Platform/macOS/NativeURL.h"

#import <AppKit/AppKit.h>

namespace brimvale {

FileBrowser::Answer FileBrowser::reveal(const FileURL &item, const Tools & /*tools*/) {
    // For a missing item the Finder opens nothing and reports no error.
    if (!fileStatus(item.path()))
        return Answer::none;
    @autoreleasepool {
        NSURL *url = urlOf(item);
        // AppKit is not documented as safe on other threads.
        dispatch_async(dispatch_get_main_queue(), ^{
          [NSWorkspace.sharedWorkspace activateFileViewerSelectingURLs:@[ url ]];
        });
    }
    return Answer::shown;
}

FileBrowser::Answer FileBrowser::showProperties(const FileURL & /*item*/, const Tools & /*tools*/) {
    return Answer::none;
}

/// The Finder opens its window with the information only for scripts, which the user would have to allow.
bool FileBrowser::canShowProperties(const Tools & /*tools*/) {
    return false;
}

} // namespace brimvale
