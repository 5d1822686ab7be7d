#pragma once

#include "Views/Components/TextLabel.h"

namespace brimvale {

/// One line of text that never needs more room than there is. A text that does not fit is elided, and the
/// tool tip shows it in full. Where it would be elided to a few characters of both ends, nothing is drawn.
class ElidedLabel : public TextLabel {
    Q_OBJECT

public:
    ElidedLabel(Type::Size size, Tone tone, Qt::TextElideMode mode, QWidget *parent = nullptr);
    ElidedLabel(Type::Size size, QFont::Weight weight, Qt::TextElideMode mode, QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Qt::TextElideMode mode_;
};

} // namespace brimvale
