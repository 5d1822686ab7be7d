#pragma once

#include "Catalogs/StorageCategory.h"

#include <QWidget>

class QHBoxLayout;

namespace brimvale {

class TextLabel;

/// The top of a category's page: its tile, title, risk and size, and the controls at the right.
class CategoryHeader : public QWidget {
    Q_OBJECT

public:
    explicit CategoryHeader(const StorageCategory &category, QWidget *parent = nullptr);

    void showSize(const MeasuredCategory &category);
    void addControl(QWidget *control);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    StorageCategory category_;
    TextLabel *size_;
    QHBoxLayout *controls_;
};

} // namespace brimvale
