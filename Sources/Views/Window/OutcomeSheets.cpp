#include "Views/Window/OutcomeSheets.h"

#include "Core/Model/Backups.h"
#include "Core/Model/Removals.h"
#include "Views/Category/BackupReviewView.h"
#include "Views/Removing/SheetOrder.h"
#include "Views/Window/ResultSheet.h"

namespace brimvale {

OutcomeSheets::OutcomeSheets(Removals &removals, Backups &backups, QWidget &window)
    : QObject(&window), removals_(removals), backups_(backups), window_(window) {
    connect(&removals_, &Removals::lastResultChanged, this, &OutcomeSheets::showResult);
    connect(&backups_, &Backups::changed, this, &OutcomeSheets::showReview);
}

void OutcomeSheets::showReview() {
    whenNoSheetIsOpen(this, [this] {
        if (!backups_->pendingDeletion || review_ != nullptr || !window_.isVisible())
            return;
        auto *review = new BackupReviewView(*backups_->pendingDeletion, &window_);
        review_ = review;
        connect(review, &QDialog::accepted, &backups_, &Backups::confirmPendingDeletion);
        connect(review, &QDialog::rejected, &backups_, &Backups::cancelPendingDeletion);
        review->open();
    });
}

void OutcomeSheets::showResult() {
    if (removals_->lastResult)
        results_.push_back(*removals_->lastResult);
    whenNoSheetIsOpen(this, [this] { showNextResult(); });
}

void OutcomeSheets::showNextResult() {
    if (resultSheet_ != nullptr || results_.empty() || !window_.isVisible())
        return;
    const RemovalResult result = results_.front();
    auto *sheet = new ResultSheet(result, &window_);
    results_.pop_front();
    resultSheet_ = sheet;
    connect(sheet, &ResultSheet::escalated, this,
            [this, result](const std::vector<FileURL> &items) { removals_.escalate(items, result); });
    connect(sheet, &QDialog::finished, this, [this] {
        resultSheet_ = nullptr;
        whenNoSheetIsOpen(this, [this] { showNextResult(); });
    });
    // The removed items are still leaving the tree, or the next removal has begun.
    const auto allowWhenIdle = [this, sheet] { sheet->setCanEscalate(!removals_.isRemoving()); };
    connect(&removals_, &Removals::changed, sheet, allowWhenIdle);
    allowWhenIdle();
    sheet->open();
}

} // namespace brimvale
