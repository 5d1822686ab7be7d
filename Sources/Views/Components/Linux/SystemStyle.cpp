#include "Views/Components/SystemStyle.h"

#include "Views/Components/Linux/DesktopFont.h"
#include "Views/Components/Theme.h"

#include <QFontDatabase>
#include <QStringList>

// Resources of a static library must be initialised by hand, outside of any namespace.
static void openFonts() {
    Q_INIT_RESOURCE(fonts);
}

namespace brimvale {

QFont applicationFont() {
    openFonts();
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    for (const char *weight : {"Regular", "Medium", "SemiBold", "Bold"}) {
        const int id = QFontDatabase::addApplicationFont(
            QStringLiteral(":/fonts/Inter-%1.otf").arg(QLatin1String(weight)));
        const QStringList families = QFontDatabase::applicationFontFamilies(id);
        if (!families.isEmpty())
            font.setFamilies({families.first()});
    }
    if (const QString family = desktopFontFamily(); !family.isEmpty())
        font.setFamilies(QStringList(family) + font.families());
    font.setPixelSize(static_cast<int>(Type::Size::body));
    return font;
}

} // namespace brimvale
