#include "Views/Removing/SheetOrder.h"

#include <QApplication>
#include <QDialog>
#include <utility>

namespace brimvale {

bool isSheetOpen() {
    return QApplication::activeModalWidget() != nullptr;
}

void whenNoSheetIsOpen(const QObject *context, std::function<void()> open) {
    const auto *sheet = qobject_cast<QDialog *>(QApplication::activeModalWidget());
    if (sheet == nullptr)
        return open();
    // A sheet may close because another one replaces it.
    QObject::connect(
        sheet, &QDialog::finished, context,
        [context, open = std::move(open)] { whenNoSheetIsOpen(context, open); }, Qt::QueuedConnection);
}

} // namespace brimvale
