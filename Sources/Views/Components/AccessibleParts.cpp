#include "Views/Components/AccessibleParts.h"

#include <QAccessible>
#include <QWindow>
#include <algorithm>

namespace brimvale {

QWindow *AccessiblePart::window() const {
    return widget_ == nullptr ? nullptr : widget_->window()->windowHandle();
}

QAccessibleInterface *AccessiblePart::parent() const {
    return QAccessible::queryAccessibleInterface(widget_);
}

QString AccessiblePart::text(QAccessible::Text kind) const {
    return kind == QAccessible::Name && isValid() ? name() : QString();
}

QRect AccessiblePart::rect() const {
    if (!isValid())
        return {};
    const QRect inWidget = area();
    return {widget_->mapToGlobal(inWidget.topLeft()), inWidget.size()};
}

AccessibleParts::~AccessibleParts() {
    for (const QAccessible::Id part : parts_)
        QAccessible::deleteAccessibleInterface(part);
}

QAccessibleInterface *AccessibleParts::child(int index) const {
    return index < 0 || index >= childCount() ? nullptr : part(static_cast<std::size_t>(index));
}

QAccessibleInterface *AccessibleParts::part(std::size_t index) const {
    while (parts_.size() <= index)
        parts_.push_back(QAccessible::registerAccessibleInterface(makePart(parts_.size())));
    return QAccessible::accessibleInterface(parts_[index]);
}

int AccessibleParts::indexOfChild(const QAccessibleInterface *child) const {
    const auto found = std::find_if(parts_.begin(), parts_.end(), [&](QAccessible::Id part) {
        return QAccessible::accessibleInterface(part) == child;
    });
    const auto index = static_cast<int>(found - parts_.begin());
    return index < childCount() && found != parts_.end() ? index : -1;
}

} // namespace brimvale
