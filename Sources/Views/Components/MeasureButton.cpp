#include "Views/Components/MeasureButton.h"

#include "Views/Components/PageParts.h"
#include "Views/Components/ProgressNote.h"

using namespace Qt::StringLiterals;

namespace brimvale {

MeasureButton::MeasureButton(const QString &work, WhileMeasuring whileMeasuring, QWidget *page)
    : QPushButton(u"Measure"_s, page), whileMeasuring_(whileMeasuring), page_(page),
      progress_(new ProgressNote(work, page)), stop_(makeButton("stopMeasuring", u"Stop"_s, page)) {
    setObjectName(QStringLiteral("measure"));
    stop_->setAccessibleName(u"Stop %1"_s.arg(work.toLower()));
    // It stops soon, not at once.
    connect(stop_, &QPushButton::clicked, this, [this] {
        page_->setFocus();
        stop_->setEnabled(false);
    });
}

void MeasureButton::showState(bool isMeasuring, double progress) {
    // The page takes the focus, so that it does not move to the control after the button.
    if ((isMeasuring && hasFocus()) || (!isMeasuring && stop_->hasFocus()))
        page_->setFocus();
    if (whileMeasuring_ == WhileMeasuring::hidden)
        setHidden(isMeasuring);
    else
        setDisabled(isMeasuring);
    if (!isMeasuring && page_->hasFocus())
        setFocus();
    if (!isMeasuring)
        stop_->setEnabled(true);
    stop_->setVisible(isMeasuring);
    progress_->setVisible(isMeasuring);
    progress_->setProgress(progress);
}

} // namespace brimvale
