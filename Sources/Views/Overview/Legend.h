#pragma once

#include "Views/Components/LegendLayout.h"
#include "Views/Overview/SegmentedBar.h"

#include <QWidget>
#include <vector>

namespace brimvale {

/// The names of a bar's segments beside dots of their colours, in as many lines as needed.
class Legend : public QWidget {
    Q_OBJECT

public:
    explicit Legend(QWidget *parent = nullptr);

    void setSegments(const std::vector<BarSegment> &segments);

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] std::vector<LegendPlace> places(int width) const;

    std::vector<BarSegment> segments_;
};

} // namespace brimvale
