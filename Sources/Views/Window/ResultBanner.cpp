#include "Views/Window/ResultBanner.h"

#include "Core/Model/Removals.h"
#include "Core/Model/Trash.h"
#include "Views/Removing/ConfirmationSheet.h"
#include "Views/Removing/SelectionTexts.h"
#include "Views/Removing/SheetOrder.h"
#include "Views/Window/ResultView.h"

#include <QAccessible>
#include <QShortcut>
#include <QVBoxLayout>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

ResultBanner::ResultBanner(Removals &removals, Trash &trash, QWidget *parent)
    : Bar(parent), removals_(removals), trash_(trash), layout_(new QVBoxLayout(this)) {
    setObjectName(QStringLiteral("resultBanner"));
    layout_->setContentsMargins(0, 0, 0, 0);
    hide();
    auto *escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    escape->setContext(Qt::WidgetWithChildrenShortcut);
    connect(escape, &QShortcut::activated, this, &ResultBanner::dismiss);
    connect(&removals_, &Removals::lastResultChanged, this, &ResultBanner::showRemoval);
    connect(&removals_, &Removals::changed, this, &ResultBanner::showActions);
    connect(&trash_, &Trash::changed, this, &ResultBanner::showActions);
    connect(&trash_, &Trash::undone, this, &ResultBanner::showPutBack);
    connect(&trash_, &Trash::wasListed, this, &ResultBanner::confirmEmptying);
}

void ResultBanner::showRemoval() {
    if (!removals_->lastResult)
        return;
    auto *view = new ResultView(*removals_->lastResult, this);
    connect(view, &ResultView::escalated, this, [this, view] {
        const RemovalResult result = view->removal();
        dismiss();
        removals_.escalate(result.needsAdmin, result);
    });
    connect(view, &ResultView::undoAsked, this, [this, view] { trash_.undo(view->removal()); });
    connect(view, &ResultView::emptyingAsked, this, &ResultBanner::listTrash);
    add(view);
}

void ResultBanner::showPutBack(const PutBackResult &result) {
    add(new ResultView(result, this));
}

void ResultBanner::add(ResultView *view) {
    view->hide();
    connect(view, &ResultView::dismissed, this, &ResultBanner::dismiss);
    layout_->addWidget(view);
    views_.push_back(view);
    if (views_.size() > 1 && !views_.front()->needsAttention())
        dismiss();
    else
        showNext();
}

void ResultBanner::dismiss() {
    if (views_.empty())
        return;
    views_.front()->hide();
    views_.front()->deleteLater();
    views_.pop_front();
    showNext();
}

void ResultBanner::showNext() {
    setVisible(!views_.empty());
    if (views_.empty() || views_.front()->isVisibleTo(this))
        return;
    showActions();
    views_.front()->show();
    QAccessibleEvent alert(views_.front(), QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void ResultBanner::showActions() {
    if (views_.empty())
        return;
    ResultView &view = *views_.front();
    const bool isIdle = !removals_.isRemoving() && !trash_->isPuttingBack;
    view.setCanEscalate(isIdle); // the removed items may still be leaving the tree
    view.setUndo(trash_.canUndo(view.removal()), isIdle);
    view.setEmptyTrash(trash_.isReadable(), isIdle && !isListing_);
}

void ResultBanner::listTrash() {
    isListing_ = true;
    showActions();
    trash_.list();
}

void ResultBanner::confirmEmptying(const std::vector<CleanupEntry> &items) {
    if (!std::exchange(isListing_, false))
        return;
    showActions();
    if (items.empty())
        return trash_.empty({});
    whenNoSheetIsOpen(this, [this, items] {
        auto *sheet =
            new ConfirmationSheet(u"Empty the Trash?"_s, deletionText(items), u"Empty Trash"_s, window());
        connect(sheet, &QDialog::accepted, this, [this, items] { trash_.empty(items); });
        sheet->open();
    });
}

} // namespace brimvale
