#include "Views/Window/BackupReviews.h"

#include "Core/Model/Backups.h"
#include "Views/Category/BackupReviewView.h"
#include "Views/Removing/SheetOrder.h"

namespace brimvale {

BackupReviews::BackupReviews(Backups &backups, QWidget &window)
    : QObject(&window), backups_(backups), window_(window) {
    connect(&backups_, &Backups::changed, this, &BackupReviews::showReview);
}

void BackupReviews::showReview() {
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

} // namespace brimvale
