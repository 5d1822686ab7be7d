#pragma once

#include "Core/Removal/RemovalMode.h"
#include "Views/Components/Bar.h"

#include <cstdint>
#include <string>

class QPushButton;

namespace brimvale {

class Backups;
class ElidedLabel;
class ProgressNote;
class RemovalModePicker;
class Removals;
class TextLabel;

/// The bar of a category whose items are backed up before they are removed: the folder for backups, how the
/// originals are removed afterwards, and the progress of a backup.
class BackupBar : public Bar {
    Q_OBJECT

public:
    /// Both must outlive the bar.
    BackupBar(Backups &backups, const Removals &removals, QWidget *parent = nullptr);

    /// The number of selected items, and their bytes in total. With none, the button is disabled.
    void setSelection(std::int64_t count, std::int64_t bytes);

signals:
    void backupAsked(RemovalMode mode);

private:
    QWidget *makeFolderRow();
    QWidget *makeActionRow();
    void chooseFolder();
    void showState();
    /// The result of the last backup.
    [[nodiscard]] std::string archiveNote() const;

    Backups &backups_;
    const Removals &removals_;
    std::int64_t count_ = 0;
    std::int64_t bytes_ = 0;
    ElidedLabel *folder_;
    QPushButton *change_;
    ElidedLabel *detail_; ///< the item being copied
    TextLabel *status_;
    TextLabel *selection_;
    RemovalModePicker *picker_;
    QPushButton *backUp_;
    ProgressNote *progress_;
    QPushButton *cancel_;
};

} // namespace brimvale
