#include "Views/Browse/SelectionCheck.h"

#include "Base/Background.h"
#include "Core/Storage/CategoryPolicies.h"

#include <utility>

namespace brimvale {

namespace {

std::optional<SelectionCheck::Objection> objectionTo(const std::vector<FileURL> &items,
                                                     const StopFlag &outdated) {
    const RemovalRefusals refusals = removalRefusals(items, outdated);
    for (const FileURL &item : items)
        if (const auto refusal = refusals.find(item); refusal != refusals.end())
            return refusal->second;
    const CategoryPolicies policies;
    for (const FileURL &item : items) {
        if (outdated.isSet())
            break;
        if (std::optional<CategoryPolicy> policy = policies.of(item))
            return *std::move(policy);
    }
    return std::nullopt;
}

} // namespace

SelectionCheck::~SelectionCheck() {
    outdated_.set();
}

void SelectionCheck::check(std::vector<FileURL> items) {
    outdated_.set();
    items_ = std::move(items);
    objection_.reset();
    isPending_ = !items_.empty();
    askNext();
}

/// One question at a time, so that a disk that does not answer keeps one thread at most.
void SelectionCheck::askNext() {
    if (items_.empty() || std::exchange(isAsking_, true))
        return;
    outdated_ = StopFlag();
    inBackground(
        *QThreadPool::globalInstance(), this,
        [items = std::exchange(items_, {}), outdated = outdated_] { return objectionTo(items, outdated); },
        [this, outdated = outdated_](std::optional<Objection> found) {
            isAsking_ = false;
            if (outdated.isSet())
                return askNext();
            objection_ = std::move(found);
            isPending_ = false;
            emit answered();
        });
}

} // namespace brimvale
