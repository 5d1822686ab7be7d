#include "Views/Window/RunningWork.h"

#include "Core/Model/Backups.h"
#include "Core/Model/Removals.h"
#include "Core/Model/Trash.h"
#include "Views/Components/KeepAwake.h"

using namespace Qt::StringLiterals;

namespace brimvale {

RunningWork::RunningWork(const Removals &removals, const Backups &backups, const Trash &trash,
                         QObject *parent)
    : QObject(parent), removals_(removals), backups_(backups), trash_(trash) {
    connect(&removals_, &Removals::changed, this, &RunningWork::follow);
    connect(&backups_, &Backups::changed, this, &RunningWork::follow);
    connect(&trash_, &Trash::changed, this, &RunningWork::follow);
}

void RunningWork::follow() {
    const bool isRunning = removals_.isRemoving() || backups_->isArchiving || trash_->isPuttingBack;
    if (isRunning == (awake_ != nullptr))
        return;
    awake_ = isRunning ? keepAwake(u"Files are being removed, put back or backed up."_s) : nullptr;
}

} // namespace brimvale
