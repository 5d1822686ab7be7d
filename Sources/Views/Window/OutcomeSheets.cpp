#include "Views/Window/OutcomeSheets.h"

#include "Core/Model/CorvelModel.h"
#include "Views/Category/BackupReviewView.h"
#include "Views/Removing/SheetOrder.h"
#include "Views/Window/ResultSheet.h"

namespace brimvale {

OutcomeSheets::OutcomeSheets(CorvelModel &model, QWidget &window)
    : QObject(&window), model_(model), window_(window) {
    connect(&model_, &CorvelModel::lastResultChanged, this, &OutcomeSheets::showResult);
    connect(&model_, &CorvelModel::archiveChanged, this, &OutcomeSheets::showReview);
}

void OutcomeSheets::showReview() {
    whenNoSheetIsOpen(this, [this] {
        if (!*model_.pendingDeletion || review_ != nullptr || !window_.isVisible())
            return;
        auto *review = new BackupReviewView(**model_.pendingDeletion, &window_);
        review_ = review;
        connect(review, &QDialog::accepted, &model_, &CorvelModel::confirmPendingDeletion);
        connect(review, &QDialog::rejected, &model_, &CorvelModel::cancelPendingDeletion);
        review->open();
    });
}

void OutcomeSheets::showResult() {
    if (*model_.lastResult)
        results_.push_back(**model_.lastResult);
    whenNoSheetIsOpen(this, [this] { showNextResult(); });
}

void OutcomeSheets::showNextResult() {
    if (resultSheet_ != nullptr || results_.empty() || !window_.isVisible())
        return;
    auto *sheet = new ResultSheet(results_.front(), &window_);
    results_.pop_front();
    resultSheet_ = sheet;
    connect(sheet, &ResultSheet::escalated, &model_, &CorvelModel::escalate);
    connect(sheet, &QDialog::finished, this, [this] {
        resultSheet_ = nullptr;
        whenNoSheetIsOpen(this, [this] { showNextResult(); });
    });
    // What the result tells of is still leaving the tree, or the next removal has begun.
    const auto allowWhenIdle = [this, sheet] { sheet->setCanEscalate(!model_.isRemoving()); };
    connect(&model_, &CorvelModel::removalChanged, sheet, allowWhenIdle);
    allowWhenIdle();
    sheet->open();
}

} // namespace brimvale
