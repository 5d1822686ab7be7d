#include "Views/Category/CategoryDetailView.h"

#include "Base/Background.h"
#include "Core/Backup/BackupPlan.h"
#include "Core/Model/Backups.h"
#include "Core/Model/Removals.h"
#include "Core/Model/Storage.h"
#include "Core/Model/Trash.h"
#include "Core/Storage/CleanupEntries.h"
#include "Core/Storage/CleanupRiskTexts.h"
#include "Core/Storage/StorageFigures.h"
#include "Platform/RunningApps.h"
#include "Views/Category/BackupBar.h"
#include "Views/Category/CategoryHeader.h"
#include "Views/Category/HiddenSpaceNotes.h"
#include "Views/Category/TrashBar.h"
#include "Views/Category/TrashPage.h"
#include "Views/Components/AccessNotice.h"
#include "Views/Components/Card.h"
#include "Views/Components/MeasureButton.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/NoteLabel.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/ProgressNote.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"
#include "Views/Entries/EntryList.h"
#include "Views/Removing/ActionBar.h"
#include "Views/Removing/ConfirmationSheet.h"
#include "Views/Removing/RemovalSheet.h"
#include "Views/Removing/SheetOrder.h"

#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

QString whyEmpty(const MeasuredCategory &category) {
    if (!category.measured)
        return u"Not measured yet. Press Measure to start. Measuring never changes your files."_s;
    if (category.category.measurement == CategoryMeasurement::remainder)
        return u"Nothing explains this figure yet."_s;
    if (category.hasUnreadableRoot)
        return EntryList::unreadableText();
    if (std::holds_alternative<TrashAction>(category.category.action))
        return u"The Trash is empty."_s;
    return u"This category is empty."_s;
}

} // namespace

CategoryDetailView::CategoryDetailView(std::string id, Storage &storage, Removals &removals, Backups &backups,
                                       Trash &trash, QWidget *parent)
    : QWidget(parent), id_(std::move(id)), storage_(storage), removals_(removals), backups_(backups),
      trash_(trash), action_(storage.category(id_)->category.action),
      header_(new CategoryHeader(storage.category(id_)->category, this)),
      measure_(new MeasureButton(u"Measuring storage"_s, MeasureButton::WhileMeasuring::hidden, this)),
      entries_(new EntryList(canTick() ? &ticked_ : nullptr, this)),
      state_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)),
      sentence_(new TextLabel(Type::Size::body, TextLabel::Tone::secondary, this)),
      hiddenSpace_(new HiddenSpaceNotes(this)) {
    setObjectName(QStringLiteral("categoryPage:") + text(id_));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeHead());
    layout->addWidget(makeContent(), 1);
    addActions(*layout);

    connect(measure_, &QPushButton::clicked, this,
            [this] { AccessNotice::beforeLook(*this, [this] { storage_.measureCategories(); }); });
    connect(measure_->stop(), &QPushButton::clicked, &storage_, &Storage::stopMeasuring);
    connect(&storage_, &Storage::changed, this, &CategoryDetailView::showCategory);
    connect(&removals_, &Removals::changed, this, &CategoryDetailView::showSelection);
    connect(&ticked_, &TickedEntries::changed, this, &CategoryDetailView::showSelection);
    connect(hiddenSpace_, &HiddenSpaceNotes::measuringAsked, this,
            &CategoryDetailView::measureAsAdministrator);
    connect(entries_, &EntryList::browseAsked, this, &CategoryDetailView::browseAsked);
    if (std::holds_alternative<RemovableAction>(action_))
        entries_->offerBasket();
    connect(entries_, &EntryList::basketAsked, this, &CategoryDetailView::basketAsked);
    showCategory();
    showSelection();
}

bool CategoryDetailView::canTick() const {
    return std::holds_alternative<RemovableAction>(action_) ||
           std::holds_alternative<BackupThenRemoveAction>(action_) ||
           std::holds_alternative<TrashAction>(action_);
}

QWidget *CategoryDetailView::makeHead() {
    measure_->setAutoDefault(true); // Return presses it
    measure_->progress()->setObjectName(QStringLiteral("categoryProgress"));
    measure_->progress()->setFixedWidth(200);
    header_->addControl(measure_);
    header_->addControl(measure_->progress());
    header_->addControl(measure_->stop());
    return makePageHead(header_, Metrics::pageGap, this);
}

QWidget *CategoryDetailView::makeContent() {
    const StorageCategory &category = storage_.category(id_)->category;
    auto *content = new QWidget(this);
    auto *layout = new QVBoxLayout(content);
    layout->setContentsMargins(Metrics::pageMargin, 0, Metrics::pageMargin, Metrics::pageMargin);
    layout->setSpacing(Metrics::pageGap);
    const auto addNote = [&](const char *name, const char *icon, const std::string &words) {
        auto *note = new NoteLabel(QLatin1String(icon), IconLabel::Tone::quiet, content);
        note->setObjectName(QLatin1String(name));
        note->setText(text(words));
        layout->addWidget(note);
    };
    if (category.caveat)
        addNote("caveat", "info", *category.caveat);
    if (const auto *readOnly = std::get_if<ReadOnlyAction>(&category.action))
        addNote("reason", "lock", readOnly->reason);
    if (const auto *backup = std::get_if<BackupThenRemoveAction>(&category.action))
        addNote("warning", "info", backup->warning);

    auto *card = new Card(content);
    auto *inCard = new QVBoxLayout(card);
    inCard->setContentsMargins(1, 8, 1, 8);
    inCard->setSpacing(0);
    state_->setObjectName(QStringLiteral("categoryState"));
    state_->setWordWrap(true);
    state_->setContentsMargins(16, 8, 16, 8);
    entries_->setAccessibleName(text(category.title));
    inCard->addWidget(state_);
    inCard->addWidget(entries_);
    sentence_->setObjectName(QStringLiteral("sentence"));
    sentence_->setWordWrap(true);
    layout->addWidget(card);
    layout->addWidget(sentence_);
    layout->addWidget(hiddenSpace_);
    layout->addStretch(1);
    return makeScrollArea(content, this);
}

void CategoryDetailView::addActions(QVBoxLayout &layout) {
    if (std::holds_alternative<RemovableAction>(action_)) {
        bar_ = new ActionBar(this);
        layout.addWidget(bar_);
        connect(&ticked_, &TickedEntries::refused, bar_, &ActionBar::showRefusal);
        connect(bar_, &ActionBar::removalAsked, this, &CategoryDetailView::confirmRemoval);
    } else if (std::holds_alternative<BackupThenRemoveAction>(action_)) {
        backupBar_ = new BackupBar(backups_, removals_, this);
        layout.addWidget(backupBar_);
        connect(backupBar_, &BackupBar::backupAsked, this, &CategoryDetailView::prepareBackup);
    } else if (std::holds_alternative<TrashAction>(action_)) {
        trashPage_ = new TrashPage(trash_, removals_, *this);
        layout.addWidget(&trashPage_->bar());
        connect(trashPage_, &TrashPage::wordsChanged, this,
                [this] { entries_->setWords(trashPage_->words()); });
        entries_->setWords(trashPage_->words());
    } else if (std::holds_alternative<ApplicationsAction>(action_)) {
        auto *open = new QPushButton(u"Open Apps"_s, this);
        open->setObjectName(QStringLiteral("openApps"));
        open->setDefault(true);
        connect(open, &QPushButton::clicked, this, &CategoryDetailView::appsAsked);
        header_->addControl(open);
    }
}

void CategoryDetailView::showCategory() {
    const MeasuredCategory &category = *storage_.category(id_);
    header_->showSize(category);
    measure_->showState(storage_->isMeasuringCategories, storage_->categoryProgress);
    showEntries(category);
    const bool isRemainder = category.category.measurement == CategoryMeasurement::remainder;
    const std::optional<std::string> sentence = isRemainder
                                                    ? StorageFigures::systemDataSentence(storage_->categories)
                                                    : StorageFigures::elsewhereSentence(category);
    sentence_->setText(text(sentence.value_or("")));
    sentence_->setHidden(!sentence);
    const bool isBusy = storage_->isMeasuringCategories || storage_->isMeasuringAsAdministrator;
    hiddenSpace_->show(isRemainder && storage_->lastCategoryScan ? storage_.hiddenSpaceSentences()
                                                                 : std::vector<std::string>(),
                       !storage_.incompletePlaces().empty(), isBusy);
}

void CategoryDetailView::measureAsAdministrator() {
    storage_.measureAsAdministrator([page = QPointer(this)](const std::optional<PrivilegedRunError> &error) {
        if (!error || page.isNull())
            return;
        const QString reason =
            error->message
                ? text(*error->message)
                : u"No password was entered, or the system did not ask for one. The sizes have not "
                  "changed."_s;
        showNoticeSheet(*page, u"Nothing was measured as administrator"_s, reason);
    });
}

void CategoryDetailView::showEntries(const MeasuredCategory &category) {
    entries_->setEntries(category.entries);
    entries_->setHidden(category.entries.empty());
    state_->setHidden(!category.entries.empty());
    if (category.entries.empty())
        state_->setText(whyEmpty(category));
    if (trashPage_ != nullptr)
        trashPage_->setRows(category.entries);
    ticked_.retain({&category.entries});
}

void CategoryDetailView::showSelection() {
    if (bar_ != nullptr) {
        bar_->setSelection(ticked_.count(), ticked_.bytes());
        bar_->setBusy(removals_.isRemoving());
    }
    if (backupBar_ != nullptr)
        backupBar_->setSelection(ticked_.count(), ticked_.bytes());
    if (trashPage_ != nullptr)
        trashPage_->setSelection(tickedEntries(), ticked_.count(), ticked_.bytes());
}

/// The selected entries, in the order of the page.
std::vector<CleanupEntry> CategoryDetailView::tickedEntries() const {
    std::vector<CleanupEntry> entries;
    for (const CleanupEntry &entry : storage_.category(id_)->entries)
        if (ticked_.contains(entry.url))
            entries.push_back(entry);
    return entries;
}

void CategoryDetailView::confirmRemoval(RemovalMode mode) {
    const CleanupRisk risk = storage_.category(id_)->category.risk;
    const RemovalRequest request{
        .items = tickedEntries(), .mode = mode, .remark = [risk](RemovalMode chosen) {
            return std::string(removalWarning(risk, chosen));
        }};
    auto *sheet = new RemovalSheet(request, this);
    connect(sheet, &RemovalSheet::confirmed, this,
            [this, items = request.items](RemovalMode chosen, const std::optional<FreePromise> &promise) {
                removals_.removeCategoryEntries(items, chosen, promise);
                bar_->resetMode();
            });
    sheet->open();
}

/// A backup of a database in use would be worthless. Checking that takes a while.
void CategoryDetailView::prepareBackup(RemovalMode mode) {
    const std::optional<std::string> application = std::get<BackupThenRemoveAction>(action_).quitFirst;
    if (!application) {
        planBackup(mode);
        return;
    }
    if (std::exchange(isPreparing_, true))
        return;
    inBackground(
        *QThreadPool::globalInstance(), this, [application] { return isApplicationRunning(*application); },
        [this, mode](bool isRunning) {
            whenNoSheetIsOpen(this, [this, isRunning, mode] {
                isPreparing_ = false;
                if (isRunning)
                    askToQuit();
                else
                    planBackup(mode);
            });
        });
}

void CategoryDetailView::askToQuit() {
    const QString application = text(std::get<BackupThenRemoveAction>(action_).application);
    (new NoticeSheet(u"Quit %1 first"_s.arg(application),
                     u"%1 is running. Copying its database while it is open produces a "
                     "backup that will not restore, so quit %1 and try again."_s.arg(application),
                     this))
        ->open();
}

/// Refuses entries that cannot be in one backup, and asks if there is not enough space.
void CategoryDetailView::planBackup(RemovalMode mode) {
    const std::vector<CleanupEntry> entries = tickedEntries();
    std::vector<FileURL> items;
    for (const CleanupEntry &entry : entries)
        items.push_back(entry.url);
    if (items.empty())
        return;
    if (const auto refusal = BackupPlan::refusal(items, backups_->backupRoot)) {
        (new NoticeSheet(u"These items can’t go into one backup"_s, text(*refusal), this))->open();
        return;
    }
    const auto shortage =
        BackupPlan::shortage(items, CleanupEntries::totalSize(entries), backups_->backupRoot);
    if (!shortage) {
        backUp(entries, mode);
        return;
    }
    auto *sheet = new ConfirmationSheet(u"There may not be enough space for the backup"_s,
                                        text(BackupPlan::sentence(*shortage)), u"Back Up Anyway"_s, this);
    connect(sheet, &QDialog::accepted, this, [this, entries, mode] { backUp(entries, mode); });
    sheet->open();
}

void CategoryDetailView::backUp(const std::vector<CleanupEntry> &entries, RemovalMode mode) {
    backups_.archiveThenReview(storage_.category(id_)->category.title, backups_->backupRoot, entries, mode,
                               std::get<BackupThenRemoveAction>(action_).quitFirst);
}

} // namespace brimvale
