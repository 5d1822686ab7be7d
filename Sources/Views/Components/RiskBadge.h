#pragma once

#include "Catalogs/CleanupTarget.h"

#include <QWidget>

namespace brimvale {

/// A badge for the risk of a removal: a word in the risk's colour, on a light tint of that colour.
class RiskBadge : public QWidget {
    Q_OBJECT

public:
    explicit RiskBadge(CleanupRisk risk, QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    CleanupRisk risk_;
    QString label_;
};

} // namespace brimvale
