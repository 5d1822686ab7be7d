#pragma once

#include "Core/Model/CorvelModel.h"

#include <QTimer>
#include <QWidget>

class QPushButton;

namespace brimvale {

class ProgressLine;
class TextLabel;

/// Shows at the foot of the window that a removal runs, on whatever page, and stops it. A removal that is
/// done at once is not worth it.
class RemovalBar : public QWidget {
    Q_OBJECT

public:
    /// The model must outlive the bar.
    explicit RemovalBar(CorvelModel &model, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void showActivity();

    CorvelModel &model_;
    QTimer delay_;
    TextLabel *what_;
    ProgressLine *line_;
    QPushButton *stop_;
};

} // namespace brimvale
