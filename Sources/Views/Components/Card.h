#pragma once

#include <QWidget>

namespace brimvale {

/// A raised, rounded surface that holds part of a page.
class Card : public QWidget {
    Q_OBJECT

public:
    explicit Card(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace brimvale
