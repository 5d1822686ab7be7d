#pragma once

#include "Views/Browse/Compare/ChangeModel.h"

#include <QTreeView>

namespace brimvale {

/// The list of what has changed in the focused folder since an earlier scan. Return or a double click on an
/// item asks for it in the outline.
class ChangeList : public QTreeView {
    Q_OBJECT

public:
    explicit ChangeList(QWidget *parent = nullptr);
    ~ChangeList() override;

    [[nodiscard]] ChangeModel &changes() { return model_; }

signals:
    /// The user selected this change; null for none.
    void changeSelected(const brimvale::TreeChange *change);
    /// The user wants to see where this is or was.
    void shownInFolder(const brimvale::TreeChange &change);
    /// The user asked for the context menu of the selection, at this point of the screen.
    void menuRequested(const QPoint &position);

protected:
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    ChangeModel model_;
};

} // namespace brimvale
