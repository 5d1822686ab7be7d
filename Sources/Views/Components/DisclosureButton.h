#pragma once

#include <QToolButton>

namespace brimvale {

/// A button with an arrow that shows and hides what belongs to it; it is checked while that is shown.
class DisclosureButton : public QToolButton {
    Q_OBJECT

public:
    explicit DisclosureButton(QWidget *parent = nullptr);

protected:
    void changeEvent(QEvent *event) override;

private:
    void drawIcon();
};

} // namespace brimvale
