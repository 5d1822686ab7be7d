#pragma once

#include <QDialog>
#include <initializer_list>

class QPushButton;
class QVBoxLayout;

namespace brimvale {

class TextLabel;

/// A dialog that belongs to one window, which cannot be used while it is open. To be opened with `open()`;
/// deletes itself when it is closed.
class Sheet : public QDialog {
    Q_OBJECT

public:
    Sheet(const char *objectName, const QString &title, QWidget *parent);

protected:
    /// The layout of the sheet, from top to bottom, `gap` points apart.
    QVBoxLayout *makeLayout(int gap = 12);
    [[nodiscard]] TextLabel *makeHeading(const char *objectName, const QString &words);
    /// The button that closes the sheet and does nothing else, which is the default.
    [[nodiscard]] QPushButton *makeCloseButton(const char *objectName, const QString &title);
    /// Adds a row of buttons, in this order at its right end. The last one, which closes the sheet, has the
    /// focus.
    void addButtons(QVBoxLayout &layout, std::initializer_list<QPushButton *> buttons);
};

} // namespace brimvale
