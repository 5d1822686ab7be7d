#include "Views/Components/ProgressNote.h"

#include "Views/Components/ProgressLine.h"
#include "Views/Components/TextLabel.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int wholeRange = 1000;

} // namespace

ProgressNote::ProgressNote(const QString &work, QWidget *parent)
    : QWidget(parent), work_(new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, this)),
      percent_(new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, this)),
      line_(new ProgressLine(this)) {
    work_->setObjectName(QStringLiteral("progressWork"));
    percent_->setAlignment(Qt::AlignRight);
    percent_->setMinimumWidth(percent_->fontMetrics().horizontalAdvance(u"%1%"_s.arg(100)));
    line_->setRange(0, wholeRange);
    auto *words = new QHBoxLayout;
    words->addWidget(work_, 1);
    words->addWidget(percent_);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(5);
    layout->addLayout(words);
    layout->addWidget(line_);
    setWork(work);
    setProgress(0);
}

void ProgressNote::setWork(const QString &work) {
    work_->setText(work);
    line_->setAccessibleName(work);
}

void ProgressNote::setProgress(double progress) {
    const double share = std::clamp(progress, 0.0, 1.0);
    line_->setValue(static_cast<int>(share * wholeRange));
    percent_->setText(u"%1%"_s.arg(static_cast<int>(share * 100)));
}

} // namespace brimvale
