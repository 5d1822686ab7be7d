#pragma once

#include "Core/Export/Comparison.h"
#include "Core/Treemap/DetailedTreemap.h"
#include "Core/Treemap/MapColors.h"
#include "Core/Treemap/Treemap.h"
#include "Core/Treemap/TreemapNavigation.h"

#include <QImage>
#include <QPoint>
#include <QWidget>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

class QHelpEvent;
class QKeyEvent;

namespace brimvale {

struct Theme;

/// The treemap of one folder: a tile for each of its largest children and one for all others or, in the
/// detailed map, a tile for everything below it that is large enough. Tiles can be selected and entered with
/// the mouse, the keyboard and assistive technology.
///
/// It keeps pointers into the tree and reads the nodes when it is drawn or resized. After every change to the
/// folder's children, call `setNode` before the event loop runs again.
class TreemapView : public QWidget {
    Q_OBJECT

public:
    explicit TreemapView(QWidget *parent = nullptr);
    ~TreemapView() override;

    /// Shows the current children of the folder `node`. Null shows nothing and drops the selection and all
    /// pointers into the tree. Never reads the nodes shown before.
    void setNode(FSNode *node);
    [[nodiscard]] FSNode *node() const { return node_; }

    /// Selects the tile of `node` or, if it has none, of its nearest parent folder with one, without a
    /// signal. Selects nothing where that would be the tile for all others.
    void setSelection(FSNode *node);

    /// Whether it is a detailed map (it is not).
    void setDetailed(bool isDetailed);
    [[nodiscard]] bool isDetailed() const { return isDetailed_; }

    /// What the colours of a detailed map tell (the folder).
    void setColors(MapColors::By by);
    /// What became of the nodes since an earlier scan, for tool tips and colours; empty where there is none.
    /// Call it again when the answers change.
    void setChanges(std::function<NodeChange(const FSNode &)> changeOf);
    /// The colours on the map as it is now; none where they tell the folder or it is not a detailed map.
    [[nodiscard]] std::vector<MapColors::Entry> legend() const;

    /// From now on the tiles stand back whose nodes do not match, apart from folders whose contents are
    /// drawn. It is also asked about the node of the tile for all others, which is an aggregate with the name
    /// and size that are shown. Empty: none stands back. Call it again when the answers change.
    void setHighlighted(std::function<bool(const FSNode &)> isHighlighted);

    /// The number of children with a tile of their own (80).
    void setMaxTiles(int maxTiles);

    /// The shown tiles, in layout order and in the widget's coordinates.
    [[nodiscard]] std::span<const TreemapTile> tiles() const { return tiles_; }
    [[nodiscard]] std::optional<std::size_t> selectedTile() const { return selectedTile_; }
    /// The innermost tile there.
    [[nodiscard]] std::optional<std::size_t> tileAt(const QPointF &position) const;
    /// The tiles as a picture (`treemapSvg`), in the light colours; empty without a folder.
    [[nodiscard]] std::string svg() const;
    /// The pixels of the widget that a tile touches.
    [[nodiscard]] QRect tileArea(std::size_t index) const;
    /// A tile's name (in a detailed map, its path) and, in another line, its size.
    [[nodiscard]] QString toolTipOf(std::size_t index) const;

    /// The same as a click, a double-click and a right-click on a tile.
    void selectTile(std::size_t index);
    void openTile(std::size_t index);
    void requestMenu(std::size_t index, QPoint globalPosition);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

signals:
    /// The user has selected a tile. The node of the tile for all others is in no tree, and exists until the
    /// next `setNode`.
    void selected(FSNode *node);
    /// The legend may be another one.
    void legendChanged();
    /// The pointer is over another tile, of which this tells in one line; empty for none.
    void hovered(const QString &what);
    /// The user wants to enter a folder.
    void drilledIn(FSNode *node);
    /// The user wants the menu of a tile, which is already selected.
    void contextMenuRequested(FSNode *node, QPoint globalPosition);

protected:
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    /// Presents the tiles and their actions to assistive technology as the items of a list, and the nested
    /// ones of a detailed map as the items of a tree.
    static void makeAccessible();
    void rebuild();
    void layOut();
    void layOutDetails(const Rect &place);
    void findSelectedTile();
    void forgetPicture();
    [[nodiscard]] MapGrowth growthOf(const FSNode &node) const;
    [[nodiscard]] std::optional<std::size_t> tileOf(const FSNode *node) const;
    void drawStates(QPainter &painter, const Theme &theme, qreal devicePixelRatio) const;
    void setHoveredTile(std::optional<std::size_t> index);
    void updateSelection();
    void move(TreemapNavigation::Direction direction);
    void selectAround(QKeyEvent &event);
    void showToolTip(const QHelpEvent &event);
    void announceSelection();
    void announceTiles();

    FSNode *node_ = nullptr;
    const FSNode *selection_ = nullptr;          ///< never dereferenced: the node may be gone
    const FSNode *pressed_ = nullptr;            ///< by the last press; never dereferenced either
    std::vector<const FSNode *> wayToSelection_; ///< from a child of the folder; never dereferenced either
    int maxTiles_ = Treemap::usualMaxTiles;
    bool isDetailed_ = false;
    std::unique_ptr<Treemap> treemap_;          ///< null in a detailed map
    std::unique_ptr<DetailedTreemap> detailed_; ///< null in any other
    std::vector<TreemapTile> tiles_;
    std::vector<DetailedTreemap::SmallerItems> smaller_;
    std::function<bool(const FSNode &)> isHighlighted_;
    MapColors colors_;
    std::function<NodeChange(const FSNode &)> changeOf_;
    std::optional<std::size_t> selectedTile_;
    std::optional<std::size_t> hoveredTile_;
    std::vector<std::uint32_t> pixels_; ///< of the picture
    QImage picture_;                    ///< the tiles without selection; null if it must be painted again
};

} // namespace brimvale
