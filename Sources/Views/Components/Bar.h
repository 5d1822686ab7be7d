#pragma once

#include <QWidget>

namespace brimvale {

/// A bar at the bottom of a page or the window, with a background of its own and a line above it.
class Bar : public QWidget {
    Q_OBJECT

public:
    explicit Bar(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace brimvale
