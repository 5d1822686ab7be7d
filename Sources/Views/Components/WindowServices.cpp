#include "Views/Components/WindowServices.h"

#include <QWidget>

namespace brimvale {

WindowServices *WindowServices::of(const QWidget &widget) {
    for (QWidget *window = widget.window(); window != nullptr;
         window = window->parentWidget() != nullptr ? window->parentWidget()->window() : nullptr)
        if (auto *services = dynamic_cast<WindowServices *>(window))
            return services;
    return nullptr;
}

void WindowServices::notify(const QWidget &widget, const QString &sentence) {
    if (WindowServices *services = of(widget))
        services->showNotice(sentence);
}

} // namespace brimvale
