#pragma once

#include <QLabel>

namespace brimvale {

/// A line icon of the window's set, in a colour of the theme.
class IconLabel : public QLabel {
    Q_OBJECT

public:
    enum class Tone { accent, quiet, warning, good };

    /// `size` points square.
    IconLabel(QString iconName, Tone tone, QWidget *parent = nullptr, int size = 16);

protected:
    void changeEvent(QEvent *event) override;

private:
    void draw();

    QString iconName_;
    Tone tone_;
    int size_;
};

} // namespace brimvale
