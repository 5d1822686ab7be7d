#pragma once

#include <QListView>

namespace brimvale {

/// A list that is as high as its rows, so that the page scrolls instead of it.
class RowList : public QListView {
    Q_OBJECT

public:
    /// The model must outlive the list.
    explicit RowList(QAbstractItemModel &model, QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

signals:
    void menuRequested(const QModelIndex &row, const QPoint &globalPlace);

protected:
    void contextMenuEvent(QContextMenuEvent *event) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    void focusInEvent(QFocusEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void showCurrent();
};

} // namespace brimvale
