#include "Views/Browse/Breadcrumb.h"

#include "Views/Components/Icons.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Popup.h"
#include "Views/Components/Theme.h"

#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QToolButton>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int chevronSize = 12;
constexpr int buttonPadding = 20;
constexpr int widestName = 220;
constexpr std::size_t mostHiddenListed = 30;

} // namespace

Breadcrumb::Breadcrumb(QWidget *parent) : QWidget(parent), layout_(new QHBoxLayout(this)) {
    setObjectName(QStringLiteral("breadcrumb"));
    setAccessibleName(u"Parent folders"_s);
    layout_->setContentsMargins(0, 0, 0, 0);
    layout_->setSpacing(0);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void Breadcrumb::setFolder(FSNode *folder) {
    way_.clear();
    for (; folder != nullptr; folder = folder->parent())
        way_.push_back(folder);
    std::reverse(way_.begin(), way_.end());
    rebuild();
}

QSize Breadcrumb::sizeHint() const {
    return {300, fontMetrics().height() + 8};
}

QSize Breadcrumb::minimumSizeHint() const {
    return {80, sizeHint().height()};
}

void Breadcrumb::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    rebuild();
}

void Breadcrumb::changeEvent(QEvent *event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        rebuild();
}

void Breadcrumb::rebuild() {
    const bool hadFocus = isAncestorOf(QApplication::focusWidget());
    while (QLayoutItem *item = layout_->takeAt(0)) {
        // Deleted later, because it may be the button that was just clicked.
        if (item->widget() != nullptr) {
            item->widget()->hide();
            item->widget()->deleteLater();
        }
        delete item;
    }
    if (way_.empty())
        return;
    const std::size_t first = firstThatFits();
    if (first > 0)
        addFolder(*way_.front(), false);
    if (first > 1)
        addHidden(first);
    QToolButton *last = nullptr;
    for (std::size_t i = first; i < way_.size(); ++i)
        last = addFolder(*way_[i], i + 1 == way_.size());
    layout_->addStretch(1);
    if (!hadFocus)
        return;
    last->show(); // a hidden widget cannot have it
    last->setFocus(Qt::OtherFocusReason);
}

/// The index of the first folder, besides the root, that is shown with all after it.
std::size_t Breadcrumb::firstThatFits() const {
    const auto widthOf = [&](const FSNode &folder) {
        return std::min(fontMetrics().horizontalAdvance(displayedName(folder)) + buttonPadding, widestName) +
               chevronSize;
    };
    int left = width() - widthOf(*way_.front()) - 2 * chevronSize - buttonPadding;
    std::size_t first = way_.size();
    while (first > 0) {
        left -= widthOf(*way_[first - 1]);
        if (left < 0)
            break;
        --first;
    }
    return std::min(first, way_.size() - 1);
}

QToolButton *Breadcrumb::addFolder(FSNode &folder, bool isFocused) {
    auto *button = new QToolButton(this);
    button->setAutoRaise(true);
    button->setFont(Type::font(Type::Size::body, isFocused ? QFont::DemiBold : QFont::Normal));
    const int widest = std::min(widestName, width()) - buttonPadding;
    button->setText(
        asLabel(button->fontMetrics().elidedText(displayedName(folder), Qt::ElideMiddle, widest)));
    button->setToolTip(asToolTip(displayedText(folder.path())));
    button->setAccessibleName(displayedName(folder));
    button->setFocusPolicy(Qt::TabFocus);
    connect(button, &QToolButton::clicked, this, [this, &folder] { emit chosen(&folder); });
    layout_->addWidget(button);
    if (!isFocused)
        addChevron();
    return button;
}

/// A menu with the nearest of the hidden folders, between the root and the first one shown.
void Breadcrumb::addHidden(std::size_t end) {
    auto *button = new QToolButton(this);
    button->setAutoRaise(true);
    button->setText(QStringLiteral("…"));
    button->setAccessibleName(u"Folders in between"_s);
    button->setFocusPolicy(Qt::TabFocus);
    // Not set as the button's menu, because the button would then draw an arrow over its text.
    connect(button, &QToolButton::clicked, this, [this, button, end] {
        QMenu *menu = makeMenu(button);
        for (std::size_t i = end - 1; i > 0 && end - i <= mostHiddenListed; --i) {
            FSNode *folder = way_[i];
            menu->addAction(asLabel(displayedName(*folder)), this, [this, folder] { emit chosen(folder); });
        }
        menu->popup(button->mapToGlobal(button->rect().bottomLeft()));
    });
    layout_->addWidget(button);
    addChevron();
}

void Breadcrumb::addChevron() {
    auto *chevron = new QLabel(this);
    chevron->setPixmap(Icons::pixmap(QStringLiteral("chevron-right"), Theme::current().tertiaryText,
                                     chevronSize, devicePixelRatioF()));
    layout_->addWidget(chevron);
}

} // namespace brimvale
