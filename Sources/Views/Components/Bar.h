#pragma once

#include <QWidget>

namespace brimvale {

/// A bar at the foot of a page or of the window, on a ground of its own with a line above it.
class Bar : public QWidget {
    Q_OBJECT

public:
    explicit Bar(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace brimvale
