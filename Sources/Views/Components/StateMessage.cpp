#include "Views/Components/StateMessage.h"

#include "Views/Components/Icons.h"
#include "Views/Components/TextLabel.h"

#include <QEvent>
#include <QVBoxLayout>

namespace brimvale {

namespace {

constexpr int iconSize = 40;
constexpr int textWidth = 420;

} // namespace

StateMessage::StateMessage(QWidget *parent)
    : QWidget(parent), icon_(new QLabel(this)),
      title_(new TextLabel(Type::Size::heading, QFont::DemiBold, this)),
      sentence_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)) {
    title_->setObjectName(QStringLiteral("stateTitle"));
    sentence_->setObjectName(QStringLiteral("stateSentence"));
    sentence_->setWordWrap(true);
    sentence_->setFixedWidth(textWidth);
    auto *layout = new QVBoxLayout(this);
    layout->setSpacing(8);
    layout->addStretch(2);
    for (QLabel *label : {icon_, static_cast<QLabel *>(title_), static_cast<QLabel *>(sentence_)}) {
        label->setAlignment(Qt::AlignHCenter);
        layout->addWidget(label, 0, Qt::AlignHCenter);
    }
    layout->addStretch(3);
}

void StateMessage::setMessage(const QString &iconName, const QString &title, const QString &sentence) {
    iconName_ = iconName;
    title_->setText(title);
    sentence_->setText(sentence);
    // A layout asks an aligned label for one line only.
    sentence_->setFixedHeight(sentence_->heightForWidth(textWidth));
    drawIcon();
}

QString StateMessage::title() const {
    return title_->text();
}

QString StateMessage::sentence() const {
    return sentence_->text();
}

void StateMessage::changeEvent(QEvent *event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        drawIcon();
}

void StateMessage::drawIcon() {
    if (!iconName_.isEmpty())
        icon_->setPixmap(
            Icons::pixmap(iconName_, Theme::current().tertiaryText, iconSize, devicePixelRatioF()));
}

} // namespace brimvale
