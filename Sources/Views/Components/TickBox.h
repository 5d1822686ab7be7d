#pragma once

#include <QAbstractButton>
#include <QRectF>

class QPainter;

namespace brimvale {

/// Paints a tick box of the window.
void paintTickBox(QPainter &painter, const QRectF &box, Qt::CheckState state, bool isEnabled = true);

/// How wide and high a tick box is, in points.
inline constexpr int tickBoxSize = 16;

/// A tick box for a whole list: ticked, not, or in part. A click on a partly ticked one ticks all. Its owner
/// sets the state; a click only asks for it.
class TickBox : public QAbstractButton {
    Q_OBJECT

public:
    explicit TickBox(QWidget *parent = nullptr);

    void setState(Qt::CheckState state);
    [[nodiscard]] Qt::CheckState state() const { return state_; }

    [[nodiscard]] QSize sizeHint() const override;

signals:
    /// The user wants everything ticked, or nothing.
    void asked(bool ticked);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Qt::CheckState state_ = Qt::Unchecked;
};

} // namespace brimvale
