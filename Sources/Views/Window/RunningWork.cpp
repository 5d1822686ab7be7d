#include "Views/Window/RunningWork.h"

#include "Core/Model/Backups.h"
#include "Core/Model/Removals.h"
#include "Core/Model/Trash.h"
#include "Core/Removal/RemovalReport.h"
#include "Views/Components/DesktopNotification.h"
#include "Views/Components/KeepAwake.h"
#include "Views/Components/Text.h"

#include <QApplication>
#include <QWidget>
#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

RunningWork::RunningWork(const Removals &removals, const Backups &backups, const Trash &trash,
                         QWidget &window, std::chrono::milliseconds noticed)
    : QObject(&window), removals_(removals), backups_(backups), trash_(trash), window_(window),
      noticed_(noticed) {
    connect(&removals_, &Removals::changed, this, &RunningWork::follow);
    connect(&removals_, &Removals::lastResultChanged, this, &RunningWork::announceResult);
    connect(&backups_, &Backups::changed, this, &RunningWork::follow);
    connect(&trash_, &Trash::changed, this, &RunningWork::follow);
}

void RunningWork::follow() {
    if (std::exchange(isArchiving_, backups_->isArchiving) && !isArchiving_)
        announceBackup();
    const bool isRunning = removals_.isRemoving() || isArchiving_ || trash_->isPuttingBack;
    if (isRunning == (awake_ != nullptr))
        return;
    awake_ = isRunning ? keepAwake(u"Files are being removed, put back or backed up."_s) : nullptr;
    if (isRunning)
        since_.start();
}

/// A backup that failed has a result, like a removal.
void RunningWork::announceBackup() {
    if (!backups_->pendingDeletion)
        return;
    const auto count = static_cast<std::int64_t>(backups_->pendingDeletion->items.size());
    announce(u"Backup complete"_s, u"%1 copied, %2. Nothing has been deleted yet."_s.arg(
                                       counted(count, "item"), sizeText(backups_->pendingDeletion->bytes)));
}

void RunningWork::announceResult() {
    if (const auto &result = removals_->lastResult)
        announce(text(std::string(RemovalReport::title(*result))), text(RemovalReport::summary(*result)));
}

void RunningWork::announce(const QString &title, const QString &words) {
    const bool isLong = since_.isValid() && since_.elapsed() >= noticed_.count();
    if (!isLong || QApplication::activeWindow() != nullptr)
        return;
    QApplication::alert(&window_);
    notifyDesktop(title, words);
}

} // namespace brimvale
