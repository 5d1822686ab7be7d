#include "Views/Components/SystemStyle.h"

#include "Views/Components/Theme.h"

#include <QFontDatabase>

namespace brimvale {

SystemFont systemFont() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(static_cast<int>(Type::Size::body));
    return {font};
}

} // namespace brimvale
