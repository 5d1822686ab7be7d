#include "Views/Category/BackupBar.h"

#include "Core/Model/Backups.h"
#include "Core/Model/Removals.h"
#include "Views/Components/ElidedLabel.h"
#include "Views/Components/FolderChooser.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/ProgressNote.h"
#include "Views/Components/Shortcuts.h"
#include "Views/Components/Text.h"
#include "Views/Removing/RemovalModePicker.h"
#include "Views/Removing/SelectionTexts.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace brimvale {

BackupBar::BackupBar(Backups &backups, const Removals &removals, QWidget *parent)
    : Bar(parent), backups_(backups), removals_(removals),
      folder_(new ElidedLabel(Type::Size::body, TextLabel::Tone::secondary, Qt::ElideMiddle, this)),
      change_(makeButton("changeFolder", u"Change…"_s, this)),
      detail_(new ElidedLabel(Type::Size::body, TextLabel::Tone::secondary, Qt::ElideMiddle, this)),
      status_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)),
      selection_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)),
      picker_(new RemovalModePicker(this)), backUp_(makeButton("backUp", {}, this)),
      progress_(new ProgressNote({}, this)), cancel_(makeButton("cancelBackup", u"Cancel"_s, this)) {
    setObjectName(QStringLiteral("backupBar"));
    status_->setObjectName(QStringLiteral("archiveStatus"));
    status_->setWordWrap(true);
    detail_->setObjectName(QStringLiteral("archiveDetail"));
    progress_->setObjectName(QStringLiteral("archiveProgress"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(Metrics::pageMargin, 10, Metrics::pageMargin, 12);
    layout->setSpacing(8);
    layout->addWidget(status_);
    layout->addWidget(detail_);
    layout->addWidget(makeFolderRow());
    layout->addWidget(makeActionRow());
    connect(&backups_, &Backups::changed, this, &BackupBar::showState);
    connect(&removals_, &Removals::changed, this, &BackupBar::showState);
    connect(backUp_, &QPushButton::clicked, this, [this] { emit backupAsked(picker_->mode()); });
    connect(cancel_, &QPushButton::clicked, &backups_, &Backups::cancelArchive);
    Shortcuts::askForRemovalWith(*backUp_);
    showState();
}

QWidget *BackupBar::makeFolderRow() {
    auto *title = new TextLabel(Type::Size::body, TextLabel::Tone::tertiary, this);
    title->setText(u"Backup folder"_s);
    folder_->setObjectName(QStringLiteral("backupRoot"));
    connect(change_, &QPushButton::clicked, this, &BackupBar::chooseFolder);
    auto *row = new QWidget(this);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    layout->addWidget(title);
    layout->addWidget(folder_, 1);
    layout->addWidget(change_);
    return row;
}

QWidget *BackupBar::makeActionRow() {
    selection_->setObjectName(QStringLiteral("selection"));
    auto *row = new QWidget(this);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    layout->addWidget(selection_, 1);
    layout->addWidget(progress_, 1);
    layout->addWidget(picker_);
    layout->addWidget(backUp_);
    layout->addWidget(cancel_);
    return row;
}

void BackupBar::chooseFolder() {
    brimvale::chooseFolder(*this, u"Choose a folder for backups"_s, backups_->backupRoot.path(),
                           [this](const std::string &path) { backups_.chooseBackupRoot(FileURL(path)); });
}

void BackupBar::setSelection(std::int64_t count, std::int64_t bytes) {
    count_ = count;
    bytes_ = bytes;
    showState();
}

void BackupBar::showState() {
    const bool isArchiving = backups_->isArchiving;
    folder_->setText(displayedText(backups_->backupRoot.path()));
    selection_->setText(selectionText(count_, bytes_));
    backUp_->setText(count_ == 0
                         ? u"Back Up and Review…"_s
                         : u"Back Up %1, %2, and Review…"_s.arg(counted(count_, "Item"), sizeText(bytes_)));
    backUp_->setEnabled(count_ > 0 && !removals_.isRemoving());

    const QString status = text(archiveNote());
    status_->setText(isArchiving ? QString() : status);
    status_->setHidden(isArchiving || status.isEmpty());
    detail_->setText(text(backups_->archiveDetail));
    detail_->setVisible(isArchiving);
    progress_->setWork(text(backups_->archiveStatus.value_or("")));
    progress_->setProgress(backups_->archiveProgress);
    progress_->setVisible(isArchiving);
    cancel_->setVisible(isArchiving);
    selection_->setHidden(isArchiving);
    picker_->setHidden(isArchiving);
    backUp_->setHidden(isArchiving);
    change_->setEnabled(!isArchiving);
    if (isArchiving)
        picker_->setMode(RemovalMode::trash); // the mode is chosen again for each backup
}

std::string BackupBar::archiveNote() const {
    return backups_->archiveError.value_or(backups_->archiveStatus.value_or(""));
}

} // namespace brimvale
