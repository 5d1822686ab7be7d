#include "Views/Window/ClosingQuestion.h"

#include "Core/Model/Backups.h"
#include "Core/Model/Removals.h"
#include "Core/Model/Volumes.h"
#include "Views/Removing/ConfirmationSheet.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

ClosingQuestion::ClosingQuestion(const Removals &removals, const Backups &backups, const Volumes &volumes,
                                 QWidget &window)
    : QObject(&window), removals_(removals), backups_(backups), volumes_(volumes), window_(window) {
    connect(&removals_, &Removals::changed, this, &ClosingQuestion::withdrawWhenIdle);
    connect(&backups_, &Backups::changed, this, &ClosingQuestion::withdrawWhenIdle);
    connect(&volumes_, &Volumes::changed, this, &ClosingQuestion::withdrawWhenIdle);
}

bool ClosingQuestion::isDue() const {
    return removals_.isRemoving() || backups_->isArchiving || volumes_->isDeletingSnapshot;
}

void ClosingQuestion::ask(const QString &action, std::function<void()> then) {
    // When quitting closes the sheet and then asks again, the old sheet still exists for a moment.
    if (sheet_ != nullptr && sheet_->isVisible())
        return;
    if (window_.isMinimized())
        window_.showNormal();
    window_.raise();
    window_.activateWindow();
    sheet_ = new ConfirmationSheet(question(), loss(), action, &window_);
    connect(sheet_, &QDialog::accepted, &window_, std::move(then));
    sheet_->open();
}

bool ClosingQuestion::administratorRuns() const {
    return removals_->removalActivity == RemovalActivity::asAdministrator || volumes_->isDeletingSnapshot;
}

QString ClosingQuestion::question() const {
    if (administratorRuns())
        return u"Quit while an administrator task is running?"_s;
    return removals_.isRemoving() ? u"Stop removing and quit?"_s : u"Stop the backup and quit?"_s;
}

QString ClosingQuestion::loss() const {
    QStringList sentences;
    if (administratorRuns())
        sentences.append(u"It will finish, but you won’t see the result."_s);
    if (removals_.isRemoving() && removals_->removalActivity != RemovalActivity::asAdministrator)
        sentences.append(u"Items already removed stay removed. The others stay where they are."_s);
    if (backups_->isArchiving)
        sentences.append(u"The backup will be incomplete. Your original files are not changed."_s);
    return sentences.join(' ');
}

void ClosingQuestion::withdrawWhenIdle() {
    if (sheet_ != nullptr && sheet_->isVisible() && !isDue())
        sheet_->reject();
}

} // namespace brimvale
