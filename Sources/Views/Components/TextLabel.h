#pragma once

#include "Views/Components/Theme.h"

#include <QLabel>

namespace brimvale {

/// A text in one of the window's sizes and tones, which follow the theme. Always plain text.
class TextLabel : public QLabel {
    Q_OBJECT

public:
    enum class Tone { primary, secondary, tertiary, warning };

    TextLabel(Type::Size size, Tone tone, QWidget *parent = nullptr);
    TextLabel(Type::Size size, QFont::Weight weight, QWidget *parent = nullptr);

    /// Tells screen readers that it is the heading of a part of the page.
    void setHeading() { isHeading_ = true; }
    [[nodiscard]] bool isHeading() const { return isHeading_; }
    /// Hides it from screen readers, because the name of another label says the same.
    void setOnlySeen() { isOnlySeen_ = true; }
    [[nodiscard]] bool isOnlySeen() const { return isOnlySeen_; }

protected:
    void changeEvent(QEvent *event) override;

private:
    void applyTheme();

    Tone tone_ = Tone::primary;
    bool isHeading_ = false;
    bool isOnlySeen_ = false;
};

} // namespace brimvale
