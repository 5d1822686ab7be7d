#include "Views/Browse/Treemap/TreemapView.h"

#include "Base/Date.h"
#include "Core/Treemap/TreemapStyle.h"
#include "Core/Treemap/TreemapSvg.h"
#include "Views/Browse/Treemap/TreemapPicture.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Theme.h"

#include <QEvent>
#include <QFocusEvent>
#include <QPaintEvent>
#include <QPainter>
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
    if (node == nullptr) {
        selection_ = pressed_ = nullptr;
        wayToSelection_.clear();
    }
    rebuild();
    setAccessibleName(node == nullptr ? u"Treemap"_s : u"Treemap of %1"_s.arg(displayedName(*node)));
}

void TreemapView::setMaxTiles(int maxTiles) {
    maxTiles_ = maxTiles;
    rebuild();
}

void TreemapView::setDetailed(bool isDetailed) {
    if (std::exchange(isDetailed_, isDetailed) != isDetailed)
        rebuild();
}

void TreemapView::setColors(MapColors::By by) {
    colors_ = {by, FSNode::secondsOf(now()), [this](const FSNode &node) { return growthOf(node); }};
    forgetPicture();
}

void TreemapView::setChanges(std::function<NodeChange(const FSNode &)> changeOf) {
    changeOf_ = std::move(changeOf);
    forgetPicture();
}

MapGrowth TreemapView::growthOf(const FSNode &node) const {
    switch (changeOf_ ? changeOf_(node).kind : NodeChange::Kind::unchanged) {
    case NodeChange::Kind::appeared:
        return MapGrowth::appeared;
    case NodeChange::Kind::moved:
        return MapGrowth::moved;
    case NodeChange::Kind::grew:
        return MapGrowth::grew;
    case NodeChange::Kind::shrank:
        return MapGrowth::shrank;
    case NodeChange::Kind::unchanged:
        break;
    }
    return MapGrowth::unchanged;
}

std::vector<MapColors::Entry> TreemapView::legend() const {
    if (!isDetailed_)
        return {};
    return colors_.legend(tiles_, TreemapPicture::surface(Theme::current()));
}

std::string TreemapView::svg() const {
    if (node_ == nullptr)
        return {};
    const std::string path = node_->path();
    if (!isDetailed_)
        return treemapSvg({path, width(), height(), tiles_});
    // In the picture, words have their usual size.
    const DetailedTreemap::Layout layout =
        DetailedTreemap(*node_).layout({0, 0, static_cast<double>(width()), static_cast<double>(height())});
    return treemapSvg({path, width(), height(), layout.tiles, true, colors_});
}

void TreemapView::setHighlighted(std::function<bool(const FSNode &)> isHighlighted) {
    isHighlighted_ = std::move(isHighlighted);
    forgetPicture();
}

void TreemapView::setSelection(FSNode *node) {
    if (node == selection_)
        return;
    updateSelection();
    selection_ = node;
    wayToSelection_.clear();
    for (; node != nullptr && node != node_; node = node->parent())
        wayToSelection_.push_back(node);
    if (node != node_)
        wayToSelection_.clear(); // it is elsewhere
    std::reverse(wayToSelection_.begin(), wayToSelection_.end());
    findSelectedTile();
    updateSelection();
    announceSelection();
}

void TreemapView::findSelectedTile() {
    selectedTile_ = TreemapNavigation::tileOn(tiles_, wayToSelection_);
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

QSize TreemapView::sizeHint() const {
    return {480, 360};
}

QSize TreemapView::minimumSizeHint() const {
    return {160, 64}; // in a small window, the details below need the room more
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
        picture_ = TreemapPicture::of({tiles_, isDetailed_, smaller_, isHighlighted_, colors_},
                                      {size(), theme, ratio, layoutDirection()}, pixels_);
    painter.drawImage(0, 0, picture_);
    if (node_ != nullptr && tiles_.empty() && smaller_.empty()) {
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
        if (!tiles_[*hoveredTile_].isOpen())
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
    if (treemap_ != nullptr && treemap_->owns(selection_)) {
        selection_ = nullptr;
        wayToSelection_.clear();
    }
    treemap_.reset();
    detailed_.reset();
    if (node_ != nullptr && isDetailed_)
        detailed_ = std::make_unique<DetailedTreemap>(*node_);
    else if (node_ != nullptr)
        treemap_ = std::make_unique<Treemap>(*node_, maxTiles_);
    layOut();
    announceTiles();
}

void TreemapView::layOut() {
    setHoveredTile(std::nullopt);
    tiles_.clear();
    smaller_.clear();
    const Rect place = {0, 0, static_cast<double>(width()), static_cast<double>(height())};
    if (treemap_ != nullptr)
        tiles_ = treemap_->layout(place);
    if (detailed_ != nullptr)
        layOutDetails(place);
    findSelectedTile();
    forgetPicture();
}

void TreemapView::layOutDetails(const Rect &place) {
    DetailedTreemap::Layout layout = detailed_->layout(place, Type::scale());
    tiles_ = std::move(layout.tiles);
    smaller_ = std::move(layout.smaller);
}

void TreemapView::forgetPicture() {
    picture_ = {};
    update();
    emit legendChanged();
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

/// Repaints the mark of selection and focus: the selected tile, otherwise the frame of the whole treemap.
void TreemapView::updateSelection() {
    if (const std::optional<std::size_t> index = selectedTile())
        update(tileArea(*index));
    else
        update(QRegion(rect()) - rect().marginsRemoved(QMargins() + focusFrameWidth));
}

} // namespace brimvale
