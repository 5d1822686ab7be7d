#include "Views/Components/SystemAppearance.h"

#import <AppKit/AppKit.h>

namespace brimvale {

SystemAppearance systemAppearance() {
    @autoreleasepool {
        // The colour has components only after it is resolved for an appearance, and none is current outside
        // of drawing.
        __block NSColor *color = nil;
        [NSApp.effectiveAppearance performAsCurrentDrawingAppearance:^{
          color = [NSColor.controlAccentColor colorUsingColorSpace:NSColorSpace.sRGBColorSpace];
        }];
        SystemAppearance appearance;
        if (color != nil)
            appearance.accent = QColor::fromRgbF(static_cast<float>(color.redComponent),
                                                 static_cast<float>(color.greenComponent),
                                                 static_cast<float>(color.blueComponent));
        return appearance;
    }
}

// Qt changes the palette of the application together with them.
void followSystemAppearance(QObject *, std::function<void()>) {}

void useForSystemParts(Appearance appearance) {
    @autoreleasepool {
        NSAppearanceName name = nil;
        if (appearance != Appearance::system)
            name = appearance == Appearance::dark ? NSAppearanceNameDarkAqua : NSAppearanceNameAqua;
        NSApp.appearance = name == nil ? nil : [NSAppearance appearanceNamed:name];
    }
}

} // namespace brimvale
