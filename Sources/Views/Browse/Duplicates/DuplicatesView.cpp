#include "Views/Browse/Duplicates/DuplicatesView.h"

#include "Core/Model/Removals.h"
#include "Core/Removal/RemovalReport.h"
#include "Views/Browse/Duplicates/DuplicatesDelegate.h"
#include "Views/Components/DestructiveButton.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/ProgressNote.h"
#include "Views/Components/StateMessage.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"
#include "Views/Components/WindowServices.h"
#include "Views/Entries/ItemActions.h"
#include "Views/Removing/ConfirmationSheet.h"
#include "Views/Removing/RemovalSheet.h"
#include "Views/Removing/SelectionTexts.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QStackedLayout>
#include <QVBoxLayout>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int sideSpace = 12;

double progressOf(const DuplicatesState &state) {
    return state.bytesToRead < 1
               ? 0
               : std::min(1.0, static_cast<double>(state.bytesRead) / static_cast<double>(state.bytesToRead));
}

QString workText(const DuplicatesState &state) {
    if (state.isSharing)
        return u"Sharing space…"_s;
    if (!state.isReading)
        return u"Reading the folder: %1"_s.arg(counted(state.filesSeen, "file"));
    return u"Comparing: %1 of %2"_s.arg(sizeText(state.bytesRead), sizeText(state.bytesToRead));
}

} // namespace

DuplicatesView::DuplicatesView(Duplicates &duplicates, Removals &removals, QWidget *parent)
    : QWidget(parent), duplicates_(duplicates), removals_(removals), model_(duplicates),
      leastLength_(new QComboBox(this)), search_(new QPushButton(this)),
      progress_(new ProgressNote({}, this)),
      summary_(new TextLabel(Type::Size::body, TextLabel::Tone::primary, this)),
      rule_(new TextLabel(Type::Size::caption, TextLabel::Tone::secondary, this)),
      message_(new StateMessage(this)), list_(new QListView(this)), bar_(new QWidget(this)),
      refusal_(new TextLabel(Type::Size::caption, TextLabel::Tone::warning, this)),
      tickAll_(new QPushButton(u"Select All but One in Each Group"_s, this)),
      letStay_(new QPushButton(u"Keep This One"_s, this)), share_(new QPushButton(u"Share Space…"_s, this)),
      remove_(new DestructiveButton(this)), body_(new QStackedLayout) {
    setObjectName(QStringLiteral("duplicates"));
    message_->setObjectName(QStringLiteral("duplicatesMessage"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addWidget(makeHead());
    layout->addLayout(body_, 1);
    body_->addWidget(message_);
    body_->addWidget(makeList());
    setFocusProxy(search_);

    connect(&duplicates_, &Duplicates::changed, this, &DuplicatesView::showState);
    connect(&duplicates_, &Duplicates::shared, this, &DuplicatesView::sayShared);
    connect(&removals_, &Removals::changed, this, &DuplicatesView::showTicks);
    connect(&model_, &DuplicatesModel::ticksChanged, this, &DuplicatesView::showTicks);
    connect(&model_, &DuplicatesModel::refused, this, [this](const QString &reason) {
        refusal_->setText(reason);
        refusal_->show();
    });
    showState();
}

DuplicatesView::~DuplicatesView() {
    list_->setModel(nullptr);
}

QWidget *DuplicatesView::makeHead() {
    leastLength_->setObjectName(QStringLiteral("leastLength"));
    leastLength_->setAccessibleName(u"Smallest files to compare"_s);
    leastLength_->addItem(u"Files of any size"_s, 1);
    leastLength_->addItem(u"Files from 100 KB"_s, 100'000);
    leastLength_->addItem(u"Files from 1 MB"_s, 1'000'000);
    leastLength_->addItem(u"Files from 10 MB"_s, 10'000'000);
    leastLength_->addItem(u"Files from 100 MB"_s, 100'000'000);
    leastLength_->setCurrentIndex(2);
    search_->setObjectName(QStringLiteral("searchDuplicates"));
    connect(search_, &QPushButton::clicked, this, &DuplicatesView::search);
    progress_->setObjectName(QStringLiteral("duplicatesProgress"));
    summary_->setObjectName(QStringLiteral("duplicatesSummary"));
    summary_->setWordWrap(true);
    rule_->setObjectName(QStringLiteral("duplicatesRule"));
    rule_->setWordWrap(true);
    rule_->setText(text(StayingRule::inWords()));

    auto *head = new QWidget(this);
    auto *layout = new QVBoxLayout(head);
    layout->setContentsMargins(sideSpace, 4, sideSpace, 0);
    layout->setSpacing(6);
    auto *row = new QHBoxLayout;
    row->addWidget(leastLength_);
    row->addWidget(search_);
    row->addStretch(1);
    layout->addLayout(row);
    layout->addWidget(progress_);
    layout->addWidget(summary_);
    layout->addWidget(rule_);
    return head;
}

QWidget *DuplicatesView::makeList() {
    list_->setObjectName(QStringLiteral("duplicatesList"));
    list_->setAccessibleName(u"Duplicates"_s);
    list_->setModel(&model_);
    list_->setItemDelegate(new DuplicatesDelegate(list_));
    list_->setSelectionMode(QAbstractItemView::NoSelection);
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->setFrameShape(QFrame::NoFrame);
    list_->setUniformItemSizes(true);
    list_->setMouseTracking(true);
    list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(list_, &QWidget::customContextMenuRequested, this, &DuplicatesView::showMenu);
    const auto open = [this] {
        if (const DuplicateFile *file = model_.fileAt(list_->currentIndex()))
            emit shownInFolder(file->url);
    };
    connect(list_, &QAbstractItemView::doubleClicked, this, open);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        connect(new QShortcut(key, list_, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated, this,
                open);
    connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &DuplicatesView::showCurrent);
    auto *side = new QWidget(this);
    auto *layout = new QVBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addWidget(list_, 1);
    layout->addWidget(makeBar());
    return side;
}

QWidget *DuplicatesView::makeBar() {
    refusal_->setObjectName(QStringLiteral("duplicatesRefusal"));
    refusal_->setWordWrap(true);
    refusal_->hide();
    tickAll_->setObjectName(QStringLiteral("tickAllButOne"));
    letStay_->setObjectName(QStringLiteral("letStay"));
    share_->setObjectName(QStringLiteral("shareSpace"));
    share_->setToolTip(u"Stores equal files once. No file is removed or changed."_s);
    remove_->setObjectName(QStringLiteral("removeDuplicates"));
    connect(tickAll_, &QPushButton::clicked, &model_, &DuplicatesModel::tickAllThatMayGo);
    connect(letStay_, &QPushButton::clicked, this, &DuplicatesView::letCurrentStay);
    connect(share_, &QPushButton::clicked, this, &DuplicatesView::askForSharing);
    connect(remove_, &QPushButton::clicked, this, &DuplicatesView::askForRemoval);

    auto *layout = new QVBoxLayout(bar_);
    layout->setContentsMargins(sideSpace, 0, sideSpace, 4);
    layout->setSpacing(6);
    layout->addWidget(refusal_);
    auto *upper = new QHBoxLayout;
    upper->addWidget(tickAll_);
    upper->addStretch(1);
    upper->addWidget(share_);
    auto *lower = new QHBoxLayout;
    lower->addWidget(letStay_);
    lower->addStretch(1);
    lower->addWidget(remove_);
    layout->addLayout(upper);
    layout->addLayout(lower);
    return bar_;
}

void DuplicatesView::setFolder(const std::optional<FileURL> &folder) {
    folder_ = folder;
    showState();
}

/// Begins a search, or stops the work that runs.
void DuplicatesView::search() {
    if (duplicates_->isSearching || duplicates_->isSharing)
        duplicates_.stop();
    else if (folder_)
        duplicates_.search(*folder_, leastLength_->currentData().toLongLong());
}

void DuplicatesView::showState() {
    const DuplicatesState &state = *duplicates_;
    const int scrolled = list_->verticalScrollBar()->value();
    model_.refresh(); // first, because the progress is painted at once and rows of earlier groups with it
    list_->verticalScrollBar()->setValue(scrolled);
    const bool isBusy = state.isSearching || state.isSharing;
    search_->setText(isBusy                                    ? u"Stop"_s
                     : state.folder && state.folder == folder_ ? u"Search Again"_s
                                                               : u"Find Duplicates"_s);
    search_->setEnabled(isBusy || folder_);
    leastLength_->setEnabled(!isBusy);
    progress_->setVisible(isBusy);
    progress_->setWork(workText(state));
    progress_->setProgress(progressOf(state));
    const bool hasRows = !state.isSearching && model_.rowCount() > 0;
    rule_->setVisible(hasRows);
    summary_->setVisible(hasRows);
    if (hasRows)
        summary_->setText(u"%1 in “%2”%3: removing all but one of each would free %4."_s.arg(
            counted(static_cast<std::int64_t>(model_.shownGroups()), "group"),
            displayedText(state.folder->fileName()), state.found.wasStopped ? u", stopped early"_s : u""_s,
            sizeText(state.removableBytes())));
    body_->setCurrentIndex(hasRows ? 1 : 0);
    showMessage();
    showCurrent();
}

void DuplicatesView::showMessage() {
    const DuplicatesState &state = *duplicates_;
    const QString icon = u"files"_s;
    if (!folder_)
        return message_->setMessage(icon, u"Nothing to compare"_s,
                                    u"This list was read from a file. Scan a folder of this disk first."_s);
    const QString name = displayedText(folder_->fileName());
    if (state.isSearching)
        return message_->setMessage(icon, u"Looking for equal files…"_s,
                                    u"Only files of the same length are read."_s);
    if (!state.folder)
        return message_->setMessage(icon, u"Find files that you have twice"_s,
                                    u"Compares the contents of all files in “%1”. Nothing is selected or "
                                    "removed until you choose it."_s.arg(name));
    QString sentence = u"None of the %1 in “%2” is a duplicate."_s.arg(
        counted(state.found.files, "file"), displayedText(state.folder->fileName()));
    if (!state.found.groups.empty())
        sentence = u"All equal files in “%1” are protected or take no space of their own."_s.arg(
            displayedText(state.folder->fileName()));
    message_->setMessage(icon, state.found.wasStopped ? u"Stopped"_s : u"No duplicates"_s,
                         state.found.wasStopped ? u"Nothing was found before the search was stopped."_s
                                                : sentence);
}

void DuplicatesView::showTicks() {
    const std::int64_t count = static_cast<std::int64_t>(model_.ticked().size());
    const std::int64_t bytes = model_.tickedBytes();
    const bool isBusy = duplicates_->isSharing || removals_.isRemoving();
    refusal_->hide();
    remove_->setText(removals_.isRemoving() ? u"Removing…"_s : removalTitle(count, bytes));
    remove_->setEnabled(count > 0 && !isBusy);
    tickAll_->setEnabled(!isBusy);
    share_->setVisible(sharingIn(duplicates_->found.groups).files > 0);
    share_->setEnabled(!isBusy);
}

void DuplicatesView::showCurrent() {
    const std::optional<DuplicatePlace> place = model_.placeAt(list_->currentIndex());
    letStay_->setEnabled(place && duplicates_->mayGo(*place));
}

void DuplicatesView::letCurrentStay() {
    const std::optional<DuplicatePlace> place = model_.placeAt(list_->currentIndex());
    if (!place)
        return;
    const int row = list_->currentIndex().row();
    duplicates_.letStay(*place);
    list_->setCurrentIndex(model_.index(row));
}

void DuplicatesView::showMenu(const QPoint &place) {
    const QModelIndex row = list_->indexAt(place);
    const DuplicateFile *file = model_.fileAt(row);
    if (file == nullptr)
        return;
    list_->setCurrentIndex(row);
    QMenu *menu = ItemActions::menuFor({file->url}, this);
    menu->addAction(u"Show in Folders"_s, this, [this, url = file->url] { emit shownInFolder(url); });
    menu->addAction(letStay_->text(), this, &DuplicatesView::letCurrentStay)
        ->setEnabled(letStay_->isEnabled());
    menu->popup(list_->viewport()->mapToGlobal(place));
}

void DuplicatesView::askForRemoval() {
    const std::vector<CleanupEntry> entries = duplicates_.entriesOf(model_.ticked());
    if (entries.empty() || removals_.isRemoving() || duplicates_->isSharing)
        return;
    auto *sheet = new RemovalSheet({.items = entries}, this);
    connect(sheet, &RemovalSheet::confirmed, this,
            [this, entries](RemovalMode mode, const std::optional<FreePromise> &promise) {
                removals_.removeCleanupEntries(entries, mode, promise);
            });
    connect(&duplicates_, &Duplicates::changed, sheet, &QDialog::reject); // it may ask about other files
    sheet->open();
}

void DuplicatesView::askForSharing() {
    const SharingFigures figures = sharingIn(duplicates_->found.groups);
    auto *sheet = new ConfirmationSheet(
        u"Share the space of %1 and free %2?"_s.arg(counted(figures.files, "file"), sizeText(figures.bytes)),
        u"The disk then stores the contents of equal files once. Every file stays where it is, with its "
        "dates, and can be changed without changing the others. The file system compares all of them again "
        "first."_s,
        u"Share Space"_s, this);
    connect(sheet, &QDialog::accepted, &duplicates_, &Duplicates::share);
    connect(&duplicates_, &Duplicates::changed, sheet, &QDialog::reject);
    sheet->open();
}

void DuplicatesView::sayShared(const SpaceSharing &done) {
    QString sentence = u"Shared the space of %1, %2."_s.arg(
        counted(static_cast<std::int64_t>(done.shared.size()), "file"), sizeText(done.bytes));
    if (!done.failed.empty())
        sentence += u" Not possible for %1: %2"_s.arg(
            counted(static_cast<std::int64_t>(done.failed.size()), "file"), text(done.failed.front().reason));
    WindowServices::notify(*this, sentence);
}

} // namespace brimvale
