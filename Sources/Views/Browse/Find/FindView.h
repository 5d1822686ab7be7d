#pragma once

#include "Views/Browse/Find/FindModel.h"

#include <QTimer>
#include <QTreeView>
#include <optional>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

namespace brimvale {

/// The largest files of a folder, or its files by type or age. A large tree is counted from the event loop.
/// Return on a file asks for it in the outline, on a group it shows or hides the group's files.
class FindView : public QTreeView {
    Q_OBJECT

public:
    explicit FindView(QWidget *parent = nullptr);
    ~FindView() override;

    /// Shows a list of the files of `folder` that the filter accepts, as they are now. Ages count from
    /// `moment`, in seconds since 1970. Open groups of the same list stay open. Drops the selection.
    void showFiles(FindModel::List list, FSNode &folder, const FileFilter &filter, std::uint32_t moment);
    /// Drops all rows and all pointers into the tree.
    void letGo();
    /// Selects the selected files again, by their paths, when the same list has been counted next. Call it
    /// before they leave the tree.
    void keepSelection();

    /// The selected files, in no particular order.
    [[nodiscard]] std::vector<FSNode *> selectedNodes() const;
    /// Selects the listed files of open groups that are not selected now.
    void invertSelection();

signals:
    /// The user selected these nodes, or selected nodes are no longer shown.
    void selectionChangedTo(const std::vector<brimvale::FSNode *> &nodes);
    /// The user wants to see this file in its folder.
    void shownInFolder(brimvale::FSNode *file);
    /// The user asked for the context menu of the selection, at this point of the screen.
    void menuRequested(const QPoint &position);
    /// The counting is done.
    void hasCounted();

protected:
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void advance();
    void open(const QModelIndex &index);
    void toggle(const QModelIndex &group);
    void putBackSelection();
    [[nodiscard]] QModelIndexList shownFiles() const;

    FindModel model_;
    FindModel::List list_ = FindModel::List::largest;
    FSNode *folder_ = nullptr;
    std::optional<FileSurvey> survey_; ///< while it is counting
    QTimer timer_;
    std::set<int> openGroups_;             ///< by their keys
    std::unordered_set<std::string> kept_; ///< the paths of files to select
};

} // namespace brimvale
