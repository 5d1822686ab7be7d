#pragma once

#include "Views/Components/Card.h"

class QAction;
class QComboBox;

namespace brimvale {

class ElidedLabel;
class MapLegend;
class TreemapView;

/// The card with the treemap. Above the map it tells what the pointer is over, and has the switch for the
/// detailed map and the choice of its colours. Below it is their legend.
class TreemapPanel : public Card {
    Q_OBJECT

public:
    TreemapPanel(TreemapView &map, QWidget *parent);

    /// The switch for the detailed map, for a menu.
    [[nodiscard]] QAction *detailedMap() const { return detailedMap_; }

    /// Whether the page is compared with an earlier scan: offers the colours for that and chooses them. When
    /// it ends, the map is as before.
    void setComparing(bool isComparing);

protected:
    void changeEvent(QEvent *event) override;

private:
    [[nodiscard]] QWidget *makeHead();
    [[nodiscard]] QComboBox *makeColors();
    void showState();
    void showLegend();
    void drawIcon();

    TreemapView &map_;
    ElidedLabel *hovered_;
    QAction *detailedMap_;
    QComboBox *colors_;
    MapLegend *legend_;
    bool wasDetailed_ = false; ///< before the comparison
    int colorsBefore_ = 0;
};

} // namespace brimvale
