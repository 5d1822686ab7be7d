#pragma once

#include <QPushButton>

namespace brimvale {

/// A button that destroys something, in the colour that says so. Never the default of its window.
class DestructiveButton : public QPushButton {
    Q_OBJECT

public:
    explicit DestructiveButton(QWidget *parent = nullptr);

protected:
    void changeEvent(QEvent *event) override;

private:
    void applyTheme();
};

} // namespace brimvale
