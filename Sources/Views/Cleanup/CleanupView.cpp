#include "Views/Cleanup/CleanupView.h"

#include "Base/Background.h"
#include "Base/VisibleText.h"
#include "Catalogs/Words.h"
#include "Core/Model/Cleanup.h"
#include "Core/Model/Removals.h"
#include "Core/Removal/RemovalReport.h"
#include "Core/Storage/CleanupCatalog.h"
#include "Core/Storage/CleanupEntries.h"
#include "Platform/Host.h"
#include "Views/Cleanup/TargetCard.h"
#include "Views/Components/AccessNotice.h"
#include "Views/Components/MeasureButton.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/PageHeader.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/Popup.h"
#include "Views/Components/ProgressNote.h"
#include "Views/Components/Text.h"
#include "Views/Components/TextLabel.h"
#include "Views/Removing/ActionBar.h"
#include "Views/Removing/RemovalSheet.h"
#include "Views/Removing/SelectionTexts.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>
#include <iterator>
#include <unordered_set>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int cardGap = 12;
constexpr int largestFirst = 1; ///< in the choice of the order

/// What the user should know before these entries are removed; empty for nothing.
std::string notesBefore(const std::vector<CleanupEntry> &entries, const std::vector<std::string> &running) {
    std::string notes;
    if (!running.empty()) {
        for (const std::string &name : running)
            notes += (notes.empty() ? "" : ", ") + visibleText(name);
        notes += running.size() == 1 ? " is running. Quit it first" : " are running. Quit them first";
        notes += ", or there may be errors until the next start.";
    }
    if (std::any_of(entries.begin(), entries.end(),
                    [](const CleanupEntry &entry) { return entry.freesLess(); }))
        notes += std::string(notes.empty() ? "" : " ") +
                 "Other files share some of this space, so this may free less.";
    return notes;
}

} // namespace

CleanupView::CleanupView(Cleanup &cleanup, Removals &removals, QWidget *parent)
    : QWidget(parent), cleanup_(cleanup), removals_(removals),
      measure_(
          new MeasureButton(u"Measuring cleanup targets"_s, MeasureButton::WhileMeasuring::disabled, this)),
      bar_(new ActionBar(this)) {
    setObjectName(QStringLiteral("cleanupPage"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeHeader());
    layout->addWidget(makeCards(), 1);
    layout->addWidget(bar_);

    connect(measure_, &QPushButton::clicked, this,
            [this] { AccessNotice::beforeLook(*this, [this] { cleanup_.measureCleanup(); }); });
    connect(measure_->stop(), &QPushButton::clicked, &cleanup_, &Cleanup::stopMeasuring);
    connect(&cleanup_, &Cleanup::changed, this, &CleanupView::showTargets);
    connect(&removals_, &Removals::changed, this, &CleanupView::showSelection);
    connect(&ticked_, &TickedEntries::changed, this, &CleanupView::showSelection);
    connect(&ticked_, &TickedEntries::refused, bar_, &ActionBar::showRefusal);
    connect(bar_, &ActionBar::removalAsked, this, &CleanupView::confirmRemoval);
    showTargets();
}

QWidget *CleanupView::makeHeader() {
    auto *header = new PageHeader(u"Cleanup"_s, this);
    header->setSubtitle(
        u"Everything here is measured on %1. Nothing is selected by default, and nothing is removed until "
        "you say so."_s.arg(text(Words::current().thisComputer)));
    measure_->setDefault(true);
    header->addControl(measure_);
    header->addControl(measure_->stop());
    measure_->progress()->setObjectName(QStringLiteral("cleanupProgress"));
    QWidget *head = makePageHead(header, cardGap, this);
    head->layout()->setSpacing(cardGap);
    head->layout()->addWidget(makeChoices());
    head->layout()->addWidget(measure_->progress());
    return head;
}

/// The line with what was found, the order of the cards, and the button that selects what is safe.
QWidget *CleanupView::makeChoices() {
    auto *line = new QWidget(this);
    total_ = new TextLabel(Type::Size::heading, QFont::DemiBold, line);
    total_->setObjectName(QStringLiteral("cleanupTotal"));
    order_ = new QComboBox(line);
    order_->setObjectName(QStringLiteral("cardOrder"));
    order_->setAccessibleName(u"Order"_s);
    order_->addItem(u"Default Order"_s);
    order_->addItem(u"Largest First"_s);
    usePaletteOfParent(*order_->view()->window());
    selectSafe_ = makeButton("selectAllSafe", u"Select All Safe"_s, line);
    connect(order_, &QComboBox::currentIndexChanged, this, &CleanupView::orderCards);
    connect(selectSafe_, &QPushButton::clicked, this, &CleanupView::selectAllSafe);
    auto *layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(total_, 1);
    layout->addWidget(order_);
    layout->addWidget(selectSafe_);
    return line;
}

QWidget *CleanupView::makeCards() {
    auto *content = new QWidget(this);
    cards_ = new QVBoxLayout(content);
    cards_->setContentsMargins(Metrics::pageMargin, 0, Metrics::pageMargin, Metrics::pageMargin);
    cards_->setSpacing(cardGap);
    cards_->addStretch(1);
    QScrollArea *area = makeScrollArea(content, this);
    area->setObjectName(QStringLiteral("cleanupCards"));
    return area;
}

void CleanupView::showTargets() {
    const std::vector<CleanupTarget> &targets = cleanup_->cleanupTargets;
    for (std::size_t i = targets_.size(); i < targets.size(); ++i) {
        targets_.push_back(new TargetCard(targets[i], ticked_, this));
        cards_->insertWidget(static_cast<int>(i), targets_.back());
        connect(targets_.back(), &TargetCard::browseAsked, this, &CleanupView::browseAsked);
        connect(targets_.back(), &TargetCard::basketAsked, this, &CleanupView::basketAsked);
    }
    std::vector<const std::vector<CleanupEntry> *> lists;
    for (std::size_t i = 0; i < targets.size(); ++i) {
        targets_[i]->setTarget(targets[i]);
        targets_[i]->setVisible(targets[i].hasPlace);
        lists.push_back(&targets[i].entries);
    }
    if (std::exchange(wasMeasuring_, cleanup_->isMeasuringCleanup) && !wasMeasuring_)
        ticked_.findLockedAgain();
    ticked_.retain(lists);
    measure_->showState(cleanup_->isMeasuringCleanup, cleanup_->cleanupProgress);
    showTotal();
    showSelection();
    orderCards();
}

/// Items under two cards count once.
void CleanupView::showTotal() {
    std::vector<CleanupEntry> all;
    bool isMeasured = false;
    for (const CleanupTarget &target : cleanup_->cleanupTargets) {
        all.insert(all.end(), target.entries.begin(), target.entries.end());
        isMeasured = isMeasured || target.scanned;
    }
    const std::int64_t bytes = CleanupEntries::totalSize(CleanupEntries::outermost(all));
    total_->setText(isMeasured ? u"%1 found"_s.arg(sizeText(bytes)) : u"Not measured yet"_s);
}

/// Cards of the same size stay in the order of the catalog.
void CleanupView::orderCards() {
    std::vector<TargetCard *> ordered = targets_;
    if (order_->currentIndex() == largestFirst)
        std::stable_sort(ordered.begin(), ordered.end(), [](const TargetCard *a, const TargetCard *b) {
            return CleanupEntries::totalSize(a->target().entries) >
                   CleanupEntries::totalSize(b->target().entries);
        });
    bool isMoved = false;
    for (std::size_t i = 0; i < ordered.size(); ++i) {
        const int place = static_cast<int>(i);
        if (cards_->itemAt(place)->widget() == ordered[i])
            continue;
        cards_->insertWidget(place, ordered[i]);
        isMoved = true;
    }
    QWidget *before = selectSafe_;
    if (isMoved)
        for (TargetCard *card : ordered)
            for (QWidget *part : card->findChildren<QWidget *>())
                if (part->focusPolicy() != Qt::NoFocus)
                    setTabOrder(std::exchange(before, part), part);
}

/// What may be selected without a look: not the Trash, whose contents were the user's own, and nothing that a
/// running program uses.
std::vector<CleanupEntry> CleanupView::safeEntries() const {
    std::vector<CleanupEntry> entries;
    for (const CleanupTarget &target : cleanup_->cleanupTargets)
        if (target.risk == CleanupRisk::safe && target.id != "trash")
            std::copy_if(target.entries.begin(), target.entries.end(), std::back_inserter(entries),
                         [](const CleanupEntry &entry) { return !entry.isInUse(); });
    return entries;
}

void CleanupView::selectAllSafe() {
    ticked_.setTicked(safeEntries(), true);
}

void CleanupView::showSelection() {
    bar_->setSelection(ticked_.count(), ticked_.bytes());
    bar_->setBusy(removals_.isRemoving());
    selectSafe_->setEnabled(ticked_.canTickAny(safeEntries()));
}

/// Looks first which of the programs that use the selected entries are running.
void CleanupView::confirmRemoval(RemovalMode mode) {
    const std::vector<CleanupEntry> entries = tickedEntries();
    const bool mayBeInUse = std::any_of(entries.begin(), entries.end(), [](const CleanupEntry &entry) {
        return entry.notes && entry.notes->program;
    });
    if (!mayBeInUse)
        return ask(entries, mode, {});
    if (std::exchange(isAsking_, true))
        return;
    inBackground(
        *QThreadPool::globalInstance(), this, [entries] { return CleanupCatalog::runningPrograms(entries); },
        [this, entries, mode](const std::vector<std::string> &running) {
            isAsking_ = false;
            ask(entries, mode, running);
        });
}

void CleanupView::ask(const std::vector<CleanupEntry> &entries, RemovalMode mode,
                      const std::vector<std::string> &running) {
    const std::string notes = notesBefore(entries, running);
    const std::size_t inTrash = countInTrash(entries);
    const auto remark = [bytes = CleanupEntries::totalSize(entries), notes, inTrash](RemovalMode chosen) {
        std::string usual = chosen == RemovalMode::trash ? RemovalReport::trashRemark(bytes) : cannotBeUndone;
        if (chosen == RemovalMode::trash && inTrash > 0)
            usual += " Items already in the Trash stay there.";
        return notes.empty() ? usual : notes + "\n\n" + usual;
    };
    const RemovalRequest request{
        .items = entries, .mode = mode, .areInTrash = inTrash == entries.size(), .remark = remark};
    auto *sheet = new RemovalSheet(request, this);
    connect(sheet, &RemovalSheet::confirmed, this,
            [this, items = request.items](RemovalMode chosen, const std::optional<FreePromise> &promise) {
                removals_.removeCleanupEntries(items, chosen, promise);
                bar_->resetMode();
            });
    sheet->open();
}

/// How many of the entries can only be deleted. A Mac decides itself about what is in its Trash.
std::size_t CleanupView::countInTrash(const std::vector<CleanupEntry> &entries) const {
    std::unordered_set<FileURL> inTrash;
    if (Host::currentSystem() == System::linux)
        for (const CleanupTarget &target : cleanup_->cleanupTargets)
            if (target.id == "trash")
                for (const CleanupEntry &entry : target.entries)
                    inTrash.insert(entry.url);
    return static_cast<std::size_t>(
        std::count_if(entries.begin(), entries.end(),
                      [&](const CleanupEntry &entry) { return inTrash.contains(entry.url); }));
}

/// The selected entries, in the order of the page, without those inside another selected folder.
std::vector<CleanupEntry> CleanupView::tickedEntries() const {
    std::vector<CleanupEntry> entries;
    for (const CleanupTarget &target : cleanup_->cleanupTargets)
        for (const CleanupEntry &entry : target.entries)
            if (ticked_.contains(entry.url))
                entries.push_back(entry);
    return CleanupEntries::outermost(entries);
}

} // namespace brimvale
