#pragma once

#include "Views/Apps/LeftoverListModel.h"
#include "Views/Components/Card.h"

#include <QString>
#include <vector>

namespace brimvale {

class RowList;
class TickBox;
struct CleanupEntry;

/// Leftovers with something in common, under a heading.
class LeftoverGroup : public Card {
    Q_OBJECT

public:
    struct Heading {
        const char *objectName; ///< of the group
        QString words;
        QString explanation;
    };

    LeftoverGroup(const Heading &heading, TickedEntries &ticked, QWidget *parent = nullptr);

    /// Hidden if there are none.
    void setRows(const std::vector<LeftoverListModel::Row> &rows);

signals:
    /// The user wants to see what is inside a folder.
    void browseAsked(const FileURL &folder);
    /// The user wants to put these items into the basket.
    void basketAsked(const std::vector<CleanupEntry> &entries);

private:
    void open(const QModelIndex &row);
    void showMenu(const QModelIndex &row, const QPoint &place);
    QWidget *makeHead(const Heading &heading);
    void showTicks();
    [[nodiscard]] std::vector<CleanupEntry> entriesOfBox() const;

    TickedEntries &ticked_;
    std::vector<LeftoverListModel::Row> rows_;
    LeftoverListModel model_;
    TickBox *all_;
    RowList *list_;
};

} // namespace brimvale
