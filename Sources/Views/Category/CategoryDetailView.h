#pragma once

#include "Catalogs/StorageCategory.h"
#include "Core/Removal/RemovalMode.h"
#include "Views/Entries/TickedEntries.h"

#include <QWidget>
#include <string>
#include <vector>

class QVBoxLayout;

namespace brimvale {

class ActionBar;
class BackupBar;
class Backups;
class CategoryHeader;
class EntryList;
class HiddenSpaceNotes;
class MeasureButton;
class Removals;
class Storage;
class TextLabel;
class Trash;
class TrashPage;

/// The page of one storage category: its description, its entries, and the actions for them.
class CategoryDetailView : public QWidget {
    Q_OBJECT

public:
    /// `id` must be the identifier of a category. The other arguments must outlive the page.
    CategoryDetailView(std::string id, Storage &storage, Removals &removals, Backups &backups, Trash &trash,
                       QWidget *parent = nullptr);

signals:
    /// The user wants to see the applications.
    void appsAsked();
    /// The user wants to see what is inside a folder.
    void browseAsked(const FileURL &folder);
    /// The user wants to put these items into the basket.
    void basketAsked(const std::vector<CleanupEntry> &entries);

private:
    [[nodiscard]] bool canTick() const;
    QWidget *makeHead();
    QWidget *makeContent();
    void addActions(QVBoxLayout &layout);
    void showCategory();
    void showEntries(const MeasuredCategory &category);
    void showSelection();
    void measureAsAdministrator();
    [[nodiscard]] std::vector<CleanupEntry> tickedEntries() const;
    void confirmRemoval(RemovalMode mode);
    void prepareBackup(RemovalMode mode);
    void askToQuit();
    void planBackup(RemovalMode mode);
    void backUp(const std::vector<CleanupEntry> &entries, RemovalMode mode);

    std::string id_;
    Storage &storage_;
    Removals &removals_;
    Backups &backups_;
    Trash &trash_;
    CategoryAction action_;
    TickedEntries ticked_;
    bool isPreparing_ = false; ///< checking whether a backup can start
    CategoryHeader *header_;
    MeasureButton *measure_;
    EntryList *entries_;
    TextLabel *state_;               ///< why there are no entries
    TextLabel *sentence_;            ///< how the entries compare with the figure
    HiddenSpaceNotes *hiddenSpace_;  ///< what no entry shows
    ActionBar *bar_ = nullptr;       ///< null if entries cannot be removed
    BackupBar *backupBar_ = nullptr; ///< null if they are removed without a backup
    TrashPage *trashPage_ = nullptr; ///< null if they are not in the Trash
};

} // namespace brimvale
