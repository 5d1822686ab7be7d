#pragma once

#include "Catalogs/StorageCategory.h"

#include <QAbstractButton>

namespace brimvale {

/// One storage category in a list: its name, share and size. Clicking it opens the category.
class CategoryRow : public QAbstractButton {
    Q_OBJECT

public:
    explicit CategoryRow(QWidget *parent = nullptr);

    /// `share` of the used space, from 0 to 1. `isLast` leaves out the line below.
    void setCategory(const MeasuredCategory &category, double share, bool isLast);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    [[nodiscard]] QString measuredSize() const;

    MeasuredCategory category_;
    double share_ = 0;
    bool isLast_ = false;
};

} // namespace brimvale
