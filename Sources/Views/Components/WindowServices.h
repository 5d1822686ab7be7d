#pragma once

#include "Base/FileURL.h"

#include <QString>

class QWidget;

namespace brimvale {

/// What the main window does for the rows of its pages.
class WindowServices {
public:
    virtual ~WindowServices() = default;

    /// Shows the item, selected in its parent folder, on the page Browse.
    virtual void showInBrowse(const FileURL &item) = 0;
    /// Shows a sentence at the bottom of the window for some seconds.
    virtual void showNotice(const QString &sentence) = 0;

    /// Those of the window that a widget is in; null outside the main window.
    [[nodiscard]] static WindowServices *of(const QWidget &widget);

    /// `showNotice` of the widget's window, if it has one.
    static void notify(const QWidget &widget, const QString &sentence);
};

} // namespace brimvale
