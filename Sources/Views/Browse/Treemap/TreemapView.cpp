#include "Views/Browse/Treemap/TreemapView.h"

#include "Core/Treemap/TreemapStyle.h"
#include "Views/Browse/Treemap/TreemapPicture.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Theme.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr qreal hoverFrameWidth = 1;
constexpr int focusFrameWidth = 2;

} // namespace

TreemapView::TreemapView(QWidget *parent) : QWidget(parent) {
    makeAccessible();
    setObjectName(QStringLiteral("treemap"));
    setAccessibleName(u"Treemap"_s);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

TreemapView::~TreemapView() = default;

void TreemapView::setNode(FSNode *node) {
    node_ = node;
    if (node == nullptr)
        selection_ = pressed_ = nullptr;
    rebuild();
    setAccessibleName(node == nullptr ? u"Treemap"_s : u"Treemap of %1"_s.arg(displayedName(*node)));
}

void TreemapView::setMaxTiles(int maxTiles) {
    maxTiles_ = maxTiles;
    rebuild();
}

void TreemapView::setSelection(FSNode *node) {
    if (node == selection_)
        return;
    updateSelection();
    selection_ = node;
    updateSelection();
    announceSelection();
}

std::optional<std::size_t> TreemapView::selectedTile() const {
    return tileOf(selection_);
}

std::optional<std::size_t> TreemapView::tileAt(const QPointF &position) const {
    const auto found = std::find_if(tiles_.begin(), tiles_.end(), [&](const TreemapTile &tile) {
        return position.x() >= tile.rect.x && position.x() < tile.rect.x + tile.rect.width &&
               position.y() >= tile.rect.y && position.y() < tile.rect.y + tile.rect.height;
    });
    return found == tiles_.end() ? std::nullopt
                                 : std::optional(static_cast<std::size_t>(found - tiles_.begin()));
}

void TreemapView::selectTile(std::size_t index) {
    FSNode *node = tiles_[index].node;
    setSelection(node);
    emit selected(node);
}

void TreemapView::openTile(std::size_t index) {
    if (tiles_[index].node->isDirectory)
        emit drilledIn(tiles_[index].node);
}

void TreemapView::requestMenu(std::size_t index, QPoint globalPosition) {
    FSNode *node = tiles_[index].node;
    selectTile(index);
    // A listener of the selection may have replaced the folder.
    if (tileOf(node))
        emit contextMenuRequested(node, globalPosition);
}

QString TreemapView::toolTipOf(std::size_t index) const {
    const FSNode &node = *tiles_[index].node;
    return displayedName(node) + QLatin1Char('\n') + QString::fromStdString(TreemapStyle::sizeText(node));
}

QSize TreemapView::sizeHint() const {
    return {480, 360};
}

QSize TreemapView::minimumSizeHint() const {
    return {160, 120};
}

bool TreemapView::event(QEvent *event) {
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    showToolTip(*static_cast<QHelpEvent *>(event));
    return true;
}

void TreemapView::changeEvent(QEvent *event) {
    QWidget::changeEvent(event);
    switch (event->type()) {
    case QEvent::PaletteChange:
    case QEvent::FontChange:
    case QEvent::LayoutDirectionChange:
        forgetPicture();
        break;
    default:
        break;
    }
}

void TreemapView::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    layOut();
}

void TreemapView::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const Theme &theme = Theme::current();
    // The ratio of the device painted on, which is not a screen when the widget is rendered into a picture.
    const qreal scale = painter.deviceTransform().m11();
    const qreal ratio = scale > 0 ? scale : devicePixelRatioF();
    if (picture_.isNull() || picture_.devicePixelRatio() != ratio)
        picture_ = TreemapPicture::of(tiles_, size(), theme, ratio, layoutDirection());
    painter.drawPixmap(0, 0, picture_);
    if (node_ != nullptr && tiles_.empty()) {
        painter.setPen(theme.tertiaryText);
        painter.setFont(Type::font(Type::Size::body));
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, u"Nothing here takes up space."_s);
    }
    drawStates(painter, theme, ratio);
}

/// Paints the states of single tiles: under the pointer, selected, focused.
void TreemapView::drawStates(QPainter &painter, const Theme &theme, qreal devicePixelRatio) const {
    painter.setRenderHint(QPainter::Antialiasing);
    if (hoveredTile_) {
        const QRectF rect = TreemapPicture::drawnRect(tiles_[*hoveredTile_].rect, devicePixelRatio);
        TreemapPicture::drawFrame(painter, rect, rect.width(), theme.hover);
        TreemapPicture::drawFrame(painter, rect, hoverFrameWidth, theme.secondaryText);
    }
    QRectF focusRect = rect();
    if (const std::optional<std::size_t> index = selectedTile()) {
        const QRectF rect = TreemapPicture::drawnRect(tiles_[*index].rect, devicePixelRatio);
        constexpr qreal width = TreemapStyle::selectedBorderWidth;
        TreemapPicture::drawFrame(painter, rect, width, theme.text);
        focusRect = rect.adjusted(width, width, -width, -width);
    }
    if (hasFocus())
        TreemapPicture::drawFrame(painter, focusRect, focusFrameWidth, theme.accent);
}

void TreemapView::mousePressEvent(QMouseEvent *event) {
    const std::optional<std::size_t> index = tileAt(event->position());
    pressed_ = index ? tiles_[*index].node : nullptr;
    if (event->button() == Qt::LeftButton && index)
        selectTile(*index);
}

/// Opens the tile of the first click: what the details tell about it may have moved the tiles since.
void TreemapView::mouseDoubleClickEvent(QMouseEvent *event) {
    const std::optional<std::size_t> index =
        pressed_ != nullptr ? tileOf(pressed_) : tileAt(event->position());
    if (event->button() == Qt::LeftButton && index)
        openTile(*index);
}

void TreemapView::mouseMoveEvent(QMouseEvent *event) {
    setHoveredTile(tileAt(event->position()));
}

void TreemapView::leaveEvent(QEvent *event) {
    QWidget::leaveEvent(event);
    setHoveredTile(std::nullopt);
}

void TreemapView::keyPressEvent(QKeyEvent *event) {
    using TreemapNavigation::Direction;
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    const int key = isPlain ? event->key() : Qt::Key_unknown;
    switch (key) {
    case Qt::Key_Left:
        return move(Direction::left);
    case Qt::Key_Right:
        return move(Direction::right);
    case Qt::Key_Up:
        return move(Direction::up);
    case Qt::Key_Down:
        return move(Direction::down);
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (const std::optional<std::size_t> index = selectedTile())
            openTile(*index);
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void TreemapView::contextMenuEvent(QContextMenuEvent *event) {
    if (event->reason() != QContextMenuEvent::Keyboard) {
        if (const std::optional<std::size_t> index = tileAt(event->pos()))
            requestMenu(*index, event->globalPos());
    } else if (const std::optional<std::size_t> index = selectedTile()) {
        requestMenu(*index, mapToGlobal(tileArea(*index).center()));
    }
}

void TreemapView::focusInEvent(QFocusEvent *event) {
    QWidget::focusInEvent(event);
    updateSelection();
    announceSelection();
}

void TreemapView::focusOutEvent(QFocusEvent *event) {
    QWidget::focusOutEvent(event);
    updateSelection();
}

void TreemapView::rebuild() {
    if (treemap_ != nullptr && treemap_->owns(selection_))
        selection_ = nullptr;
    treemap_ = node_ == nullptr ? nullptr : std::make_unique<Treemap>(*node_, maxTiles_);
    layOut();
}

void TreemapView::layOut() {
    hoveredTile_.reset();
    tiles_.clear();
    if (treemap_ != nullptr)
        tiles_ = treemap_->layout({0, 0, static_cast<double>(width()), static_cast<double>(height())});
    forgetPicture();
}

void TreemapView::forgetPicture() {
    picture_ = {};
    update();
}

std::optional<std::size_t> TreemapView::tileOf(const FSNode *node) const {
    const auto found = std::find_if(tiles_.begin(), tiles_.end(),
                                    [&](const TreemapTile &tile) { return tile.node == node; });
    return found == tiles_.end() ? std::nullopt
                                 : std::optional(static_cast<std::size_t>(found - tiles_.begin()));
}

QRect TreemapView::tileArea(std::size_t index) const {
    return TreemapPicture::drawnRect(tiles_[index].rect, devicePixelRatioF()).toAlignedRect();
}

void TreemapView::setHoveredTile(std::optional<std::size_t> index) {
    if (index == hoveredTile_)
        return;
    for (const std::optional<std::size_t> changed : {std::exchange(hoveredTile_, index), index})
        if (changed)
            update(tileArea(*changed));
}

/// Repaints the mark of selection and focus: the selected tile, otherwise the frame of the whole treemap.
void TreemapView::updateSelection() {
    if (const std::optional<std::size_t> index = selectedTile())
        update(tileArea(*index));
    else
        update(QRegion(rect()) - rect().marginsRemoved(QMargins() + focusFrameWidth));
}

void TreemapView::move(TreemapNavigation::Direction direction) {
    if (tiles_.empty())
        return;
    const std::optional<std::size_t> start = selectedTile();
    const auto target = start ? TreemapNavigation::next(tiles_, *start, direction) : std::size_t{0};
    if (target)
        selectTile(*target);
}

void TreemapView::showToolTip(const QHelpEvent &event) {
    const std::optional<std::size_t> index = tileAt(event.pos());
    if (!index)
        return QToolTip::hideText();
    QToolTip::showText(event.globalPos(), asToolTip(toolTipOf(*index)), this, tileArea(*index));
}

/// Announces the selected tile to assistive technology, and its focus if the treemap has the focus.
void TreemapView::announceSelection() {
    const std::optional<std::size_t> index = selectedTile();
    if (!index)
        return;
    for (const QAccessible::Event type : {QAccessible::Selection, QAccessible::Focus}) {
        if (type == QAccessible::Focus && !hasFocus())
            continue;
        QAccessibleEvent event(this, type);
        event.setChild(static_cast<int>(*index));
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace brimvale
