#include "Views/Components/CategoryStyle.h"

#include "Core/Storage/StorageCategories.h"

#include <map>
#include <string_view>

namespace brimvale {

std::optional<QString> iconForSymbol(std::string_view symbol) {
    static const std::map<std::string_view, const char *> icons = {
        {"app.badge", "layout-grid"},
        {"doc", "file-text"},
        {"photo", "image"},
        {"message", "message-circle"},
        {"envelope", "mail"},
        {"music.note", "music"},
        {"icloud", "cloud"},
        {"hammer", "hammer"},
        {"trash", "trash-2"},
        {"person.2", "users"},
        {"laptopcomputer", "laptop"},
        {"ellipsis.circle", "circle-ellipsis"},
        {"film", "film"},
        {"code", "code"},
        {"shippingbox", "container"},
        {"gamecontroller", "gamepad"},
        {"cpu", "cpu"},
    };
    const auto found = icons.find(symbol);
    return found == icons.end() ? std::nullopt : std::optional<QString>(QLatin1String(found->second));
}

QString categoryIcon(const StorageCategory &category) {
    return iconForSymbol(category.symbol).value_or(QStringLiteral("folder"));
}

QColor categoryColor(const StorageCategory &category) {
    const Color color = StorageCategories::color(category);
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue));
}

} // namespace brimvale
