#include "Views/Browse/Compare/ScanComparison.h"

#include "Base/Background.h"
#include "Base/StopFlag.h"

#include <mutex>
#include <utility>

namespace brimvale {

namespace {

/// Frees something large on another thread, because that would block the window. The last owner frees it.
template<class T>
void freeInBackground(std::shared_ptr<T> value) {
    if (value != nullptr)
        QThreadPool::globalInstance()->start([value = std::move(value)]() mutable { value.reset(); });
}

} // namespace

/// One comparison, shared by the main thread and the one that compares.
struct ScanComparison::Run {
    StopFlag stopped;
    std::mutex reading; ///< held while the later tree is read

    /// Of no use after a stop; then the later tree may not exist any more.
    std::shared_ptr<TreeComparison> compare(const FSNode &before, const FSNode *after) {
        std::unique_lock guard(reading);
        if (stopped.isSet())
            return nullptr;
        return std::make_shared<TreeComparison>(before, *after, stopped, [&guard] { guard.unlock(); });
    }
};

ScanComparison::~ScanComparison() {
    leaveTree();
}

void ScanComparison::begin(Earlier earlier, const FSNode &later) {
    end();
    earlier_ = std::move(earlier);
    laterPath_ = later.path();
    isOutdated_ = true;
    compareAgain(later);
}

void ScanComparison::end() {
    letGo();
    freeInBackground(std::exchange(earlier_, {}).tree);
}

void ScanComparison::compareAgain(const FSNode &later) {
    if (!isOn() || !std::exchange(isOutdated_, false))
        return;
    if (later.path() != laterPath_)
        return end();
    run_ = std::make_shared<Run>();
    inBackground(
        *QThreadPool::globalInstance(), this,
        [run = run_, before = earlier_.tree, after = &later]() mutable {
            auto found = run->compare(*before, after);
            before.reset(); // here, and not when the main thread drops the rest
            return found;
        },
        [this, run = run_](std::shared_ptr<TreeComparison> found) {
            if (run == run_)
                take(std::move(found));
            else
                freeInBackground(std::move(found));
        });
}

void ScanComparison::take(std::shared_ptr<TreeComparison> found) {
    run_ = nullptr;
    auto earlier = std::exchange(changes_, std::move(found));
    emit compared();
    freeInBackground(std::move(earlier));
}

void ScanComparison::leaveTree() {
    isOutdated_ = true;
    const std::shared_ptr<Run> run = std::exchange(run_, nullptr);
    if (run == nullptr)
        return;
    run->stopped.set();
    const std::lock_guard guard(run->reading);
}

void ScanComparison::letGo() {
    leaveTree();
    freeInBackground(std::exchange(changes_, nullptr));
}

void ScanComparison::letGoOf(const FSNode &node) {
    leaveTree();
    if (changes_)
        changes_->letGoOf(node);
}

NodeChange ScanComparison::of(const FSNode &node) const {
    return changes_ ? changes_->of(node) : NodeChange();
}

} // namespace brimvale
