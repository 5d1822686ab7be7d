#pragma once

#include <QHeaderView>

namespace brimvale {

/// The header of an outline: small titles without a background of their own, the sort direction as a chevron,
/// and a hairline below. It fits the columns into the available width, so names stay readable and nothing
/// scrolls sideways: first the share bars become shorter, then the column of items is hidden (its width is
/// 0), then the bars.
class OutlineHeader : public QHeaderView {
public:
    explicit OutlineHeader(QWidget *parent = nullptr);

    void setModel(QAbstractItemModel *model) override;

protected:
    bool viewportEvent(QEvent *event) override;
    void paintSection(QPainter *painter, const QRect &rect, int section) const override;
    void paintEvent(QPaintEvent *event) override;
    [[nodiscard]] QSize sectionSizeFromContents(int section) const override;

private:
    void fitSections();
};

} // namespace brimvale
