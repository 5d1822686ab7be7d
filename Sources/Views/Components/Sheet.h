#pragma once

#include <QDialog>
#include <initializer_list>

class QPushButton;
class QVBoxLayout;

namespace brimvale {

class TextLabel;

/// A dialog over one window, which is blocked while the dialog is open. Open it with `open()`; it deletes
/// itself when it is closed.
class Sheet : public QDialog {
    Q_OBJECT

public:
    Sheet(const char *objectName, const QString &title, QWidget *parent);

protected:
    /// The layout of the sheet, from top to bottom, `gap` points apart.
    QVBoxLayout *makeLayout(int gap = 12);
    [[nodiscard]] TextLabel *makeHeading(const char *objectName, const QString &words);
    /// A button that only closes the sheet. It is the default button.
    [[nodiscard]] QPushButton *makeCloseButton(const char *objectName, const QString &title);
    /// Adds a row of buttons, in this order, aligned right. The last one, which closes the sheet, gets the
    /// focus.
    void addButtons(QVBoxLayout &layout, std::initializer_list<QPushButton *> buttons);
};

} // namespace brimvale
