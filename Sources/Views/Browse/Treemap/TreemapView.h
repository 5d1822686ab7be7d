#pragma once

#include "Core/Treemap/Treemap.h"
#include "Core/Treemap/TreemapNavigation.h"

#include <QPixmap>
#include <QPoint>
#include <QWidget>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <vector>

class QHelpEvent;

namespace brimvale {

struct Theme;

/// The treemap of one folder: a tile for each of its largest children and one for all others, to be selected
/// and entered with the mouse, the keyboard, or through accessibility.
///
/// It keeps pointers into the tree and looks at what they point to whenever it is drawn or resized, so before
/// the event loop runs again it must be told of every change to the folder's children, with `setNode`.
class TreemapView : public QWidget {
    Q_OBJECT

public:
    explicit TreemapView(QWidget *parent = nullptr);
    ~TreemapView() override;

    /// Shows the folder `node` as it is now, from scratch; nothing with null, which lets go of the tree and
    /// of the selection. Never looks at the nodes shown before.
    void setNode(FSNode *node);
    [[nodiscard]] FSNode *node() const { return node_; }

    /// Selects the tile of `node`, without a signal. Where it has no tile of its own no tile is selected: the
    /// one that stands for many would claim to be what is selected elsewhere.
    void setSelection(FSNode *node);

    /// How many children get a tile of their own (80).
    void setMaxTiles(int maxTiles);

    /// What is shown, in layout order and in the widget's coordinates.
    [[nodiscard]] std::span<const TreemapTile> tiles() const { return tiles_; }
    [[nodiscard]] std::optional<std::size_t> selectedTile() const;
    [[nodiscard]] std::optional<std::size_t> tileAt(const QPointF &position) const;
    /// The pixels of the widget that a tile touches.
    [[nodiscard]] QRect tileArea(std::size_t index) const;
    /// A tile's name and, in a second line, its size.
    [[nodiscard]] QString toolTipOf(std::size_t index) const;

    /// The same as a click, a double click and a right click on a tile.
    void selectTile(std::size_t index);
    void openTile(std::size_t index);
    void requestMenu(std::size_t index, QPoint globalPosition);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

signals:
    /// The user has selected a tile. The node of the tile that stands for all others is in no tree, and lives
    /// until the next `setNode`.
    void selected(FSNode *node);
    /// The user wants to enter a folder.
    void drilledIn(FSNode *node);
    /// The user wants the menu of a tile, which has been selected before.
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
    /// Lets those who do not see the treemap have its tiles as the items of a list, with what can be done
    /// with them.
    static void makeAccessible();
    void rebuild();
    void layOut();
    void forgetPicture();
    [[nodiscard]] std::optional<std::size_t> tileOf(const FSNode *node) const;
    void drawStates(QPainter &painter, const Theme &theme, qreal devicePixelRatio) const;
    void setHoveredTile(std::optional<std::size_t> index);
    void updateSelection();
    void move(TreemapNavigation::Direction direction);
    void showToolTip(const QHelpEvent &event);
    void announceSelection();

    FSNode *node_ = nullptr;
    const FSNode *selection_ = nullptr; ///< never looked into: it may be gone
    int maxTiles_ = Treemap::usualMaxTiles;
    std::unique_ptr<Treemap> treemap_;
    std::vector<TreemapTile> tiles_;
    std::optional<std::size_t> hoveredTile_;
    QPixmap picture_; ///< the tiles at rest; null when it has to be painted anew
};

} // namespace brimvale
