#pragma once

#include <QAbstractButton>
#include <QRectF>

class QPainter;

namespace brimvale {

/// Paints a tick box in the window's style.
void paintTickBox(QPainter &painter, const QRectF &box, Qt::CheckState state, bool isEnabled = true);

/// The width and height of a tick box, in points.
inline constexpr int tickBoxSize = 16;

/// The space around the box of a `TickBox`, for its focus ring, in points.
inline constexpr int tickBoxMargin = 3;

/// A tick box for a whole list: all, none or some rows are selected. A click on a partly ticked box selects
/// all. A click only emits a signal; the owner sets the state.
class TickBox : public QAbstractButton {
    Q_OBJECT

public:
    explicit TickBox(QWidget *parent = nullptr);

    void setState(Qt::CheckState state);
    [[nodiscard]] Qt::CheckState state() const { return state_; }

    [[nodiscard]] QSize sizeHint() const override;

signals:
    /// The user wants all rows selected, or none.
    void asked(bool ticked);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Qt::CheckState state_ = Qt::Unchecked;
};

} // namespace brimvale
