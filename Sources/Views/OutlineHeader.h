#pragma once

#include <QHeaderView>

namespace brimvale {

/// The quiet header of a list: small words on the list's own ground, the sort direction as a chevron, and a
/// hairline beneath.
class OutlineHeader : public QHeaderView {
public:
    explicit OutlineHeader(QWidget *parent = nullptr);

protected:
    void paintSection(QPainter *painter, const QRect &rect, int section) const override;
    void paintEvent(QPaintEvent *event) override;
    [[nodiscard]] QSize sectionSizeFromContents(int section) const override;
};

} // namespace brimvale
