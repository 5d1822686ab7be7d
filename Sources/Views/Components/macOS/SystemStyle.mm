#include "Views/Components/SystemStyle.h"

#include "Views/Components/Theme.h"

#import <AppKit/AppKit.h>
#include <QFontDatabase>

namespace brimvale {

QFont applicationFont() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(static_cast<int>(Type::Size::body));
    return font;
}

std::optional<QColor> systemAccent() {
    @autoreleasepool {
        // The colour has components only after it is resolved for an appearance, and none is current outside
        // of drawing.
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
