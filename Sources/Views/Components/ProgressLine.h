#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QProgressBar>

namespace brimvale {

/// A slim line that fills up with the progress; while the range is empty (0 to 0) a part of it runs along,
/// for work whose end is not known. It stands still where the user wants no animations.
class ProgressLine : public QProgressBar {
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

    QBasicTimer timer_; ///< runs while a part runs along and is seen
    QElapsedTimer sinceStart_;
};

} // namespace brimvale
