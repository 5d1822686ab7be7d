#pragma once

#include <QPushButton>

namespace brimvale {

class ProgressNote;

/// The button that starts measuring on a page, the progress, and the button that stops it.
class MeasureButton : public QPushButton {
    Q_OBJECT

public:
    /// The state of the button while something is measured.
    enum class WhileMeasuring { hidden, disabled };

    /// `work` names what is measured. The page is the parent, and gets the focus while the button is
    /// disabled.
    MeasureButton(const QString &work, WhileMeasuring whileMeasuring, QWidget *page);

    /// The progress, for the page's layout. Visible only while something is measured.
    [[nodiscard]] ProgressNote *progress() const { return progress_; }

    /// The button that stops measuring, for the page's layout. Visible only while something is measured.
    [[nodiscard]] QPushButton *stop() const { return stop_; }

    /// `progress` is from 0 to 1.
    void showState(bool isMeasuring, double progress);

private:
    WhileMeasuring whileMeasuring_;
    QWidget *page_;
    ProgressNote *progress_;
    QPushButton *stop_;
};

} // namespace brimvale
