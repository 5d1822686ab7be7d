#include "Views/Components/NoteLabel.h"

#include "Views/Components/TextLabel.h"

#include <QHBoxLayout>

namespace brimvale {

NoteLabel::NoteLabel(const QString &iconName, IconLabel::Tone tone, QWidget *parent)
    : QWidget(parent), text_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)) {
    text_->setWordWrap(true);
    text_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(new IconLabel(iconName, tone, this), 0, Qt::AlignTop);
    layout->addWidget(text_, 1);
}

void NoteLabel::setText(const QString &text) {
    text_->setText(text);
    setHidden(text.isEmpty());
}

QString NoteLabel::text() const {
    return text_->text();
}

} // namespace brimvale
