#pragma once

#include "Views/Components/Bar.h"

#include <QTimer>

class QPushButton;

namespace brimvale {

class ProgressLine;
class Removals;
class TextLabel;

/// Shows at the foot of the window that a removal runs, on whatever page, and stops it. A removal that is
/// done at once is not worth it.
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
