#pragma once

#include <QWidget>

namespace brimvale {

/// An area for remarks that come and go. It has room for a few lines when it is empty, and keeps the height
/// it has once needed until its width changes, so that nothing beside it moves.
class SteadyArea : public QWidget {
    Q_OBJECT

public:
    /// `height` is what it has at least, in points.
    SteadyArea(int height, QWidget *parent);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    const int least_;
};

} // namespace brimvale
