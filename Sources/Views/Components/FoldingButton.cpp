#include "Views/Components/FoldingButton.h"

#include "Views/Components/NodeName.h"

#include <QEvent>
#include <QHelpEvent>
#include <QLayout>
#include <QStyleOptionButton>
#include <QToolTip>
#include <utility>

namespace brimvale {

namespace {

/// Looks again at a row when its width or that of its parts changes.
class RowFitting : public QObject {
public:
    RowFitting(QWidget &row, std::vector<FoldingButton *> buttons)
        : QObject(&row), row_(row), buttons_(std::move(buttons)) {
        row.installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest ||
            event->type() == QEvent::Show)
            fit();
        return QObject::eventFilter(watched, event);
    }

private:
    void fit() {
        int needed = row_.layout()->totalMinimumSize().width();
        for (const FoldingButton *button : buttons_)
            needed += button->isFolded() ? button->widthOfText() : 0;
        for (FoldingButton *button : buttons_) {
            const bool isFolded = needed > row_.width();
            needed -= isFolded ? button->widthOfText() : 0;
            button->setFolded(isFolded);
        }
    }

    QWidget &row_;
    std::vector<FoldingButton *> buttons_;
};

} // namespace

FoldingButton::FoldingButton(const QString &text, QWidget *parent) : QPushButton(text, parent) {}

void FoldingButton::setFolded(bool isFolded) {
    if (std::exchange(isFolded_, isFolded) == isFolded)
        return;
    updateGeometry();
    update();
}

int FoldingButton::widthOfText() const {
    QStyleOptionButton option;
    QPushButton::initStyleOption(&option);
    option.text.clear();
    return QPushButton::sizeHint().width() -
           style()->sizeFromContents(QStyle::CT_PushButton, &option, iconSize(), this).width();
}

QSize FoldingButton::sizeHint() const {
    const QSize whole = QPushButton::sizeHint();
    return isFolded_ ? QSize(whole.width() - widthOfText(), whole.height()) : whole;
}

QSize FoldingButton::minimumSizeHint() const {
    return sizeHint();
}

void FoldingButton::initStyleOption(QStyleOptionButton *option) const {
    QPushButton::initStyleOption(option);
    if (isFolded_)
        option->text.clear();
}

bool FoldingButton::event(QEvent *event) {
    if (event->type() != QEvent::ToolTip || !isFolded_)
        return QPushButton::event(event);
    QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), asToolTip(text()), this);
    return true;
}

void foldToFit(QWidget &row, std::vector<FoldingButton *> buttons) {
    new RowFitting(row, std::move(buttons));
}

} // namespace brimvale
