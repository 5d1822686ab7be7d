#pragma once

#include <QTabBar>

namespace brimvale {

/// Tabs as a row of titles, the chosen one underlined.
class TabStrip : public QTabBar {
    Q_OBJECT

public:
    explicit TabStrip(QWidget *parent = nullptr);

protected:
    [[nodiscard]] QSize tabSizeHint(int index) const override;
    [[nodiscard]] QSize minimumTabSizeHint(int index) const override;
    void paintEvent(QPaintEvent *event) override;
};

} // namespace brimvale
