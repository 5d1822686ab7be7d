#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QProgressBar>

namespace brimvale {

/// A slim line that shows the progress. While the range is empty (0 to 0), a part of it moves along, for work
/// of unknown length. It does not move if the user wants no animations.
class ProgressLine : public QProgressBar {
    Q_OBJECT

public:
    explicit ProgressLine(QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    [[nodiscard]] bool isBusy() const { return minimum() == maximum(); }
    [[nodiscard]] QRectF filledPart() const;

    QBasicTimer timer_; ///< active while a visible part moves
    QElapsedTimer sinceStart_;
};

} // namespace brimvale
