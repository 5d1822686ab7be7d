#include "Views/Components/StateMessage.h"

#include "Views/Components/Icons.h"
#include "Views/Components/TextLabel.h"

#include <QEvent>
#include <QVBoxLayout>
#include <algorithm>

namespace brimvale {

namespace {

constexpr int iconSize = 40;
constexpr int textWidth = 420; ///< at most
constexpr int margin = 8;

} // namespace

StateMessage::StateMessage(QWidget *parent)
    : QWidget(parent), icon_(new QLabel(this)),
      title_(new TextLabel(Type::Size::heading, QFont::DemiBold, this)),
      sentence_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)) {
    title_->setObjectName(QStringLiteral("stateTitle"));
    sentence_->setObjectName(QStringLiteral("stateSentence"));
    sentence_->setWordWrap(true);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
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
    fitSentence();
    drawIcon();
}

/// Layouts give an aligned label only one line.
void StateMessage::fitSentence() {
    const int width = std::clamp(contentsRect().width() - 2 * margin, 1, Type::scaled(textWidth));
    sentence_->setFixedSize(width, sentence_->heightForWidth(width));
}

QSize StateMessage::minimumSizeHint() const {
    return {0, QWidget::minimumSizeHint().height()};
}

void StateMessage::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    fitSentence();
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
