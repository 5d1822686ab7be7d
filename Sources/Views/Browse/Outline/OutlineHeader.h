#pragma once

#include <QHeaderView>
#include <optional>
#include <vector>

class QMenu;

namespace brimvale {

class FSNode;

/// The header of an outline: small titles without a background of their own, the sort direction as a chevron,
/// and a hairline below. The user chooses the columns in its context menu, moves them by dragging their
/// titles and changes their widths by dragging the edges between them.
///
/// It fits the columns into the available width, so names stay readable and nothing scrolls sideways: first
/// the share bars become shorter, then columns are hidden (their width is 0) by importance. The columns that
/// the user has chosen are more important than others, and the names may become shorter for them.
class OutlineHeader : public QHeaderView {
    Q_OBJECT

public:
    explicit OutlineHeader(QWidget *parent = nullptr);

    void setModel(QAbstractItemModel *model) override;

    /// Whether a column is shown if there is room for it.
    [[nodiscard]] bool isChosen(int column) const;
    /// Shows a column, or hides it. The names are always shown.
    void choose(int column, bool isChosen);
    /// Shows the columns, their order and their widths as they are at first.
    void useDefaults();
    /// Adds all columns to a menu, to choose them, and the way back to the usual ones.
    void addColumns(QMenu &menu);

protected:
    bool viewportEvent(QEvent *event) override;
    void paintSection(QPainter *painter, const QRect &rect, int section) const override;
    void paintEvent(QPaintEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    [[nodiscard]] QSize sectionSizeFromContents(int section) const override;

private:
    /// What the user has decided about a column.
    struct Choice {
        std::optional<bool> isShown;
        std::optional<int> width;
    };
    /// Two neighbouring columns whose common edge is dragged.
    struct Edge {
        int left;
        int right;
        int pointer;    ///< where the drag began
        int leftWidth;  ///< at that time
        int rightWidth; ///< at that time
    };

    void fitSections();
    void showComparison();
    [[nodiscard]] bool isThere(int column) const;
    [[nodiscard]] bool isAskedFor(int column) const;
    void keepSortable(int section, Qt::SortOrder order);
    [[nodiscard]] std::vector<int> byImportance() const;
    [[nodiscard]] std::optional<Edge> edgeAt(int x) const;
    void dragEdge(int x);

    std::vector<Choice> choices_;
    std::optional<Edge> dragged_;
    int sortedColumn_;
    Qt::SortOrder sortOrder_ = Qt::DescendingOrder;
};

} // namespace brimvale
