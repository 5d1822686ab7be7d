#include "Views/Cleanup/CleanupView.h"

#include "Catalogs/Words.h"
#include "Core/Model/Cleanup.h"
#include "Core/Model/Removals.h"
#include "Core/Removal/RemovalReport.h"
#include "Core/Storage/CleanupEntries.h"
#include "Views/Cleanup/TargetCard.h"
#include "Views/Components/AccessNotice.h"
#include "Views/Components/MeasureButton.h"
#include "Views/Components/Metrics.h"
#include "Views/Components/PageHeader.h"
#include "Views/Components/PageParts.h"
#include "Views/Components/ProgressNote.h"
#include "Views/Components/Text.h"
#include "Views/Removing/ActionBar.h"
#include "Views/Removing/RemovalSheet.h"

#include <QScrollArea>
#include <QVBoxLayout>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

constexpr int cardGap = 12;

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
    showSelection();
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
    head->layout()->addWidget(measure_->progress());
    return head;
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
    }
    std::vector<const std::vector<CleanupEntry> *> lists;
    for (std::size_t i = 0; i < targets.size(); ++i) {
        targets_[i]->setTarget(targets[i]);
        lists.push_back(&targets[i].entries);
    }
    if (std::exchange(wasMeasuring_, cleanup_->isMeasuringCleanup) && !wasMeasuring_)
        ticked_.findLockedAgain();
    ticked_.retain(lists);
    measure_->showState(cleanup_->isMeasuringCleanup, cleanup_->cleanupProgress);
}

void CleanupView::showSelection() {
    bar_->setSelection(ticked_.count(), ticked_.bytes());
    bar_->setBusy(removals_.isRemoving());
}

void CleanupView::confirmRemoval(RemovalMode mode) {
    const std::vector<CleanupEntry> entries = tickedEntries();
    const auto remark = [bytes = CleanupEntries::totalSize(entries)](RemovalMode chosen) {
        return chosen == RemovalMode::trash ? RemovalReport::trashRemark(bytes) : std::string();
    };
    const RemovalRequest request{.items = entries, .mode = mode, .remark = remark};
    auto *sheet = new RemovalSheet(request, this);
    connect(sheet, &RemovalSheet::confirmed, this, [this, items = request.items](RemovalMode chosen) {
        removals_.removeCleanupEntries(items, chosen);
        bar_->resetMode();
    });
    sheet->open();
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
