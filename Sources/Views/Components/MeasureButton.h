#pragma once

#include <QPushButton>

namespace brimvale {

class ProgressNote;

/// The button that has a page measured, and the progress of that.
class MeasureButton : public QPushButton {
    Q_OBJECT

public:
    /// What becomes of the button while something is measured.
    enum class WhileMeasuring { hidden, disabled };

    /// `work` says what is measured. The page is the parent, and gets the focus while the button cannot have
    /// it.
    MeasureButton(const QString &work, WhileMeasuring whileMeasuring, QWidget *page);

    /// To be laid out by the page. Only seen while something is measured.
    [[nodiscard]] ProgressNote *progress() const { return progress_; }

    /// `progress` is from 0 to 1.
    void showState(bool isMeasuring, double progress);

private:
    WhileMeasuring whileMeasuring_;
    QWidget *page_;
    ProgressNote *progress_;
};

} // namespace brimvale
