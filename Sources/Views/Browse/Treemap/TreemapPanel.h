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
};

} // namespace brimvale
