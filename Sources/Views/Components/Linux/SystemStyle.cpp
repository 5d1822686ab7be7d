#include "Views/Components/SystemStyle.h"

#include "Views/Components/Linux/DesktopFont.h"
#include "Views/Components/Theme.h"

#include <QFontDatabase>
#include <QStringList>
#include <algorithm>

// Resources of a static library must be initialised by hand, outside of any namespace.
static void openFonts() {
    Q_INIT_RESOURCE(fonts);
}

namespace brimvale {

namespace {

// With other sizes the smallest window could not show all its controls, or texts could not be read.
constexpr double smallestScale = 0.8;
constexpr double largestScale = 1.6;

} // namespace

SystemFont systemFont() {
    openFonts();
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    for (const char *weight : {"Regular", "Medium", "SemiBold", "Bold"}) {
        const int id = QFontDatabase::addApplicationFont(
            QStringLiteral(":/fonts/Inter-%1.otf").arg(QLatin1String(weight)));
        const QStringList families = QFontDatabase::applicationFontFamilies(id);
        if (!families.isEmpty())
            font.setFamilies({families.first()});
    }
    const DesktopFont desktop = desktopFont();
    if (!desktop.family.isEmpty())
        font.setFamilies(QStringList(desktop.family) + font.families());
    const double scale = std::clamp(desktop.scale, smallestScale, largestScale);
    font.setPixelSize(qRound(static_cast<int>(Type::Size::body) * scale));
    return {font, scale};
}

} // namespace brimvale
