#include "Views/Components/MeasureButton.h"

#include "Views/Components/ProgressNote.h"

using namespace Qt::StringLiterals;

namespace brimvale {

MeasureButton::MeasureButton(const QString &work, WhileMeasuring whileMeasuring, QWidget *page)
    : QPushButton(u"Measure"_s, page), whileMeasuring_(whileMeasuring), page_(page),
      progress_(new ProgressNote(work, page)) {
    setObjectName(QStringLiteral("measure"));
}

void MeasureButton::showState(bool isMeasuring, double progress) {
    // The page takes the focus, so that it does not move to the control after the button.
    if (isMeasuring && hasFocus())
        page_->setFocus();
    if (whileMeasuring_ == WhileMeasuring::hidden)
        setHidden(isMeasuring);
    else
        setDisabled(isMeasuring);
    if (!isMeasuring && page_->hasFocus())
        setFocus();
    progress_->setVisible(isMeasuring);
    progress_->setProgress(progress);
}

} // namespace brimvale
