#pragma once

#include <QHeaderView>

namespace brimvale {

/// The quiet header of an outline: small words on the list's own ground, the sort direction as a chevron, and
/// a hairline beneath. It fits the columns into the width there is: where that is narrow, first the bars of
/// the shares become shorter, then the items go (their column has no width), then the bars, so that names
/// have room and nothing has to be scrolled sideways.
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
