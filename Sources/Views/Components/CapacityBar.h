#pragma once

#include <QWidget>

namespace brimvale {

/// A thin rounded bar, filled to the used share of a volume. Screen readers get that share in percent; its
/// owner sets its accessible name.
class CapacityBar : public QWidget {
    Q_OBJECT

public:
    explicit CapacityBar(QWidget *parent = nullptr);

    /// From 0 to 1; values outside are set to the nearer end.
    void setUsedShare(double share);
    [[nodiscard]] double usedShare() const { return usedShare_; }

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    double usedShare_ = 0;
};

} // namespace brimvale
