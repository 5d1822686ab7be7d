#include "Views/Components/SystemAccent.h"

#import <AppKit/AppKit.h>

namespace brimvale {

std::optional<QColor> systemAccent() {
    @autoreleasepool {
        // It has components only after it has been resolved for an appearance, and outside of drawing none is
        // in force.
        __block NSColor *color = nil;
        [NSApp.effectiveAppearance performAsCurrentDrawingAppearance:^{
          color = [NSColor.controlAccentColor colorUsingColorSpace:NSColorSpace.sRGBColorSpace];
        }];
        if (color == nil)
            return std::nullopt;
        return QColor::fromRgbF(static_cast<float>(color.redComponent),
                                static_cast<float>(color.greenComponent),
                                static_cast<float>(color.blueComponent));
    }
}

} // namespace brimvale
