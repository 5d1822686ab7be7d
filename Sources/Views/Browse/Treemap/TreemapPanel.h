#pragma once

#include "Views/Components/Card.h"

class QAction;
class QToolButton;

namespace brimvale {

class ElidedLabel;
class TreemapView;

/// The card with the treemap. Above the map it tells what the pointer is over, and has the switch for the
/// detailed map.
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
    void drawIcon();

    TreemapView &map_;
    ElidedLabel *hovered_;
    QAction *detailedMap_;
};

} // namespace brimvale
