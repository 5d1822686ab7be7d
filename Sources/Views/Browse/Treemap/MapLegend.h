#pragma once

#include "Core/Treemap/MapColors.h"

#include <QWidget>
#include <vector>

namespace brimvale {

/// The legend of a map's colours: a square of each colour and its name, in two lines. Names for which there
/// is no room are in the tool tip, with all others.
class MapLegend : public QWidget {
    Q_OBJECT

public:
    explicit MapLegend(QWidget *parent);

    void setEntries(std::vector<MapColors::Entry> entries);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    std::vector<MapColors::Entry> entries_;
};

} // namespace brimvale
