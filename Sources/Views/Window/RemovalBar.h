#pragma once

#include "Views/Components/Bar.h"

#include <QTimer>

class QPushButton;

namespace brimvale {

class ProgressLine;
class Removals;
class TextLabel;

/// Shows a running removal at the bottom of the window, on any page, and stops it. Not shown for a removal
/// that ends at once.
class RemovalBar : public Bar {
    Q_OBJECT

public:
    /// `removals` must outlive the bar.
    explicit RemovalBar(Removals &removals, QWidget *parent = nullptr);

private:
    void showActivity();

    const Removals &removals_;
    QTimer delay_;
    TextLabel *what_;
    ProgressLine *line_;
    QPushButton *stop_;
};

} // namespace brimvale
