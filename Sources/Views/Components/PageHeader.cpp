#include "Views/Components/PageHeader.h"

#include "Views/Components/TextLabel.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace brimvale {

PageHeader::PageHeader(const QString &title, QWidget *parent)
    : QWidget(parent), subtitle_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)),
      controls_(new QHBoxLayout) {
    auto *heading = new TextLabel(Type::Size::title, QFont::Bold, this);
    heading->setObjectName(QStringLiteral("pageTitle"));
    heading->setText(title);
    heading->setHeading();
    subtitle_->setObjectName(QStringLiteral("pageSubtitle"));
    subtitle_->setWordWrap(true);
    subtitle_->hide();
    auto *words = new QVBoxLayout;
    words->setSpacing(4);
    words->addWidget(heading);
    words->addWidget(subtitle_);
    controls_->setSpacing(8);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(16);
    layout->addLayout(words, 1);
    layout->addLayout(controls_);
}

void PageHeader::setSubtitle(const QString &subtitle) {
    subtitle_->setText(subtitle);
    subtitle_->setHidden(subtitle.isEmpty());
}

void PageHeader::addControl(QWidget *control) {
    controls_->addWidget(control, 0, Qt::AlignTop);
}

} // namespace brimvale
