#include "Views/Window/ClosingQuestion.h"

#include "Core/Model/CorvelModel.h"
#include "Views/Removing/ConfirmationSheet.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

ClosingQuestion::ClosingQuestion(CorvelModel &model, QWidget &window)
    : QObject(&window), model_(model), window_(window) {
    connect(&model_, &CorvelModel::removalChanged, this, &ClosingQuestion::withdrawWhenIdle);
    connect(&model_, &CorvelModel::archiveChanged, this, &ClosingQuestion::withdrawWhenIdle);
    connect(&model_, &CorvelModel::isDeletingSnapshotChanged, this, &ClosingQuestion::withdrawWhenIdle);
}

bool ClosingQuestion::isDue() const {
    return model_.isRemoving() || *model_.isArchiving || *model_.isDeletingSnapshot;
}

void ClosingQuestion::ask(const QString &action, std::function<void()> then) {
    // One that was closed a moment ago, as quitting does before it asks again, is no longer asking.
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
    return *model_.removalActivity == RemovalActivity::asAdministrator || *model_.isDeletingSnapshot;
}

QString ClosingQuestion::question() const {
    if (administratorRuns())
        return u"Quit while the administrator's command runs?"_s;
    return model_.isRemoving() ? u"Stop removing and quit?"_s : u"Stop the backup and quit?"_s;
}

QString ClosingQuestion::loss() const {
    QStringList sentences;
    if (administratorRuns())
        sentences.append(u"It goes on until it is done, but you will not be told what became of it."_s);
    if (model_.isRemoving() && *model_.removalActivity != RemovalActivity::asAdministrator)
        sentences.append(u"What is gone by now stays gone, the rest stays where it is."_s);
    if (*model_.isArchiving)
        sentences.append(u"The backup remains unfinished. No original of it is touched."_s);
    return sentences.join(' ');
}

void ClosingQuestion::withdrawWhenIdle() {
    if (sheet_ != nullptr && sheet_->isVisible() && !isDue())
        sheet_->reject();
}

} // namespace brimvale
