#include "Views/Entries/LockedEntries.h"

#include "Base/Background.h"
#include "Views/Components/NodeName.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace brimvale {

LockedEntries::~LockedEntries() {
    cancelled_.set();
}

void LockedEntries::ask(const std::vector<const std::vector<CleanupEntry> *> &lists) {
    std::unordered_set<FileURL> listed;
    for (const std::vector<CleanupEntry> *list : lists)
        for (const CleanupEntry &entry : *list)
            if (listed.insert(entry.url).second && !known_.contains(entry.url))
                waiting_.push_back(entry.url);
    std::erase_if(refusals_, [&](const auto &one) { return !listed.contains(one.first); });
    std::erase_if(waiting_, [&](const FileURL &url) { return !listed.contains(url); });
    known_ = std::move(listed);
    askNext();
}

/// One question at a time, so that a disk that does not answer keeps one thread at most.
void LockedEntries::askNext() {
    if (waiting_.empty() || std::exchange(isAsking_, true))
        return;
    inBackground(
        *QThreadPool::globalInstance(), this,
        [items = std::exchange(waiting_, {}), cancelled = cancelled_] {
            return std::pair(items, removalRefusals(items, cancelled));
        },
        [this](std::pair<std::vector<FileURL>, RemovalRefusals> answer) {
            isAsking_ = false;
            take(answer.first, std::move(answer.second));
            askNext();
        });
}

void LockedEntries::take(const std::vector<FileURL> &asked, RemovalRefusals found) {
    bool isChanged = false;
    for (const FileURL &item : asked) {
        const auto refusal = found.find(item);
        if (refusal == found.end() || !known_.contains(item))
            isChanged = refusals_.erase(item) > 0 || isChanged;
        else
            isChanged = refusals_.insert_or_assign(item, std::move(refusal->second)).second || isChanged;
    }
    if (isChanged)
        emit changed();
}

QString LockedEntries::reason(const FileURL &url) const {
    const auto refusal = refusals_.find(url);
    if (refusal == refusals_.end())
        return {};
    const QString words = displayedText(refusal->second.reason);
    return refusal->second.hasRemovableContents ? words + u" Open it in Browse to choose what is inside."_s
                                                : words;
}

} // namespace brimvale
