#pragma once

#include <QPushButton>

namespace brimvale {

/// A button that removes something, in a warning colour. Never the default button.
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
