#include "Views/Browse/SelectionCheck.h"

#include "Base/Background.h"
#include "Core/Scan/FSNode.h"
#include "Core/Storage/CategoryPolicies.h"

#include <chrono>
#include <memory>
#include <utility>

namespace brimvale {

namespace {

constexpr std::chrono::milliseconds sliceOfReading{4};
constexpr std::size_t nodesAtOnce = 256; ///< between two looks at the clock

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

SelectionCheck::SelectionCheck(QObject *parent) : QObject(parent) {
    nextSlice_.setSingleShot(true);
    connect(&nextSlice_, &QTimer::timeout, this, &SelectionCheck::readPaths);
}

SelectionCheck::~SelectionCheck() {
    outdated_.set();
}

void SelectionCheck::check(std::vector<const FSNode *> nodes) {
    outdated_.set();
    nextSlice_.stop();
    nodes_ = std::move(nodes);
    items_.clear();
    answeredItems_.clear();
    objection_.reset();
    isPending_ = !nodes_.empty();
    if (isPending_)
        readPaths();
}

void SelectionCheck::forget() {
    if (nodes_.empty())
        return;
    nextSlice_.stop();
    nodes_.clear();
    items_.clear();
}

/// Reads paths for a short time, then lets the event loop run, because a selection may have many nodes.
void SelectionCheck::readPaths() {
    const auto end = std::chrono::steady_clock::now() + sliceOfReading;
    items_.reserve(nodes_.size());
    while (items_.size() < nodes_.size()) {
        if (items_.size() % nodesAtOnce == 0 && std::chrono::steady_clock::now() > end)
            return nextSlice_.start(std::chrono::milliseconds(0));
        items_.emplace_back(nodes_[items_.size()]->path());
    }
    nodes_.clear();
    askNext();
}

/// One question at a time, so that a disk that does not answer keeps one thread at most.
void SelectionCheck::askNext() {
    if (!nodes_.empty() || items_.empty() || std::exchange(isAsking_, true))
        return;
    outdated_ = StopFlag();
    const auto items = std::make_shared<std::vector<FileURL>>(std::exchange(items_, {}));
    inBackground(
        *QThreadPool::globalInstance(), this,
        [items, outdated = outdated_] { return objectionTo(*items, outdated); },
        [this, items, outdated = outdated_](std::optional<Objection> found) {
            isAsking_ = false;
            if (outdated.isSet())
                return askNext();
            objection_ = std::move(found);
            answeredItems_ = std::move(*items);
            isPending_ = false;
            emit answered();
        });
}

} // namespace brimvale
