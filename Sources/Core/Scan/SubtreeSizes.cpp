#include "Core/Scan/SubtreeSizes.h"

#include "Base/Bytes.h"
#include "Base/FileURL.h"
#include "Core/Scan/DiskScanner.h"
#include "Core/Scan/NestedItems.h"
#include "Core/Scan/SumLimit.h"
#include "Core/Scan/Summing.h"
#include "Platform/Dataless.h"

#include <memory>
#include <mutex>
#include <utility>

namespace brimvale {

namespace {

/// Notes of an item what is true of an item inside it.
void addMarks(MeasuredItem &outer, const MeasuredItem &inner) {
    outer.hasLinkedFiles = outer.hasLinkedFiles || inner.hasLinkedFiles;
    outer.isIncomplete = outer.isIncomplete || inner.isIncomplete;
}

/// One run. Each wanted folder gets a walk of its own, which leaves out the wanted folders inside it; their
/// bytes are added once the walk has reached them and they are finished. So nothing is walked twice, and
/// walks start in the order of the groups, inner or outer.
class Run {
public:
    Run(const std::vector<SubtreeSizes::Group> &groups, const ScanOptions &options, const StopFlag &cancelled,
        const SubtreeSizes::Finished &finished, WalkPool &pool);

    void measure();

    // State of the walks:

    [[nodiscard]] bool isSkipped(const std::string &folderPath, std::string_view name) const {
        return skipped_.contains(folderPath, name);
    }
    [[nodiscard]] bool hasUnseen(const std::string &path) const { return skipped_.hasUnseen(path); }
    [[nodiscard]] bool isUnseen(const std::string &path) const { return skipped_.unseen(path).has_value(); }
    [[nodiscard]] NestedItem *innerItem(const std::string &folderPath, std::string_view name) const {
        return items_.inner(folderPath, name);
    }
    /// A walk has reached an item inside its own. Its bytes count for the outer item as well: now, or when
    /// they are known.
    void meet(NestedItem &inner);
    /// A folder of the item is finished. It has `bytes`, and `begun` of its subfolders wait.
    void close(NestedItem &item, std::int64_t bytes, std::int64_t begun);
    /// The item contains a file with several names.
    void markLinkedFiles(NestedItem &item);
    /// A part of the item cannot be read.
    void markIncomplete(NestedItem &item);
    /// The item contains one of its ancestors. A walk of its own would have entered that.
    void markContainsAncestor(NestedItem &item);
    /// Whether the figures of a file may be added.
    [[nodiscard]] bool admits(const FileStatus &status) { return sums_.admits(status); }

private:
    void measureAlone();
    void add(NestedItem &first, std::int64_t firstBytes, std::int64_t opened);
    void settle(const NestedItem &item);
    void tellSettled();

    const ScanOptions &options_;
    const SkipList skipped_;
    const StopFlag &cancelled_;
    const SubtreeSizes::Finished &finished_;
    WalkPool &pool_;
    NestedItems items_;
    SumLimit sums_;
    std::vector<std::vector<const NestedItem *>> groups_; ///< the item of each path

    std::mutex lock_;                    ///< protects the changing fields of items, and the next two
    std::vector<std::size_t> unsettled_; ///< the number of items each group waits for
    std::vector<std::size_t> settled_;   ///< groups to report
    std::mutex telling_;                 ///< one report at a time
};

/// Sums up one walk of one item.
class Adding final : public WalkVisitor {
public:
    explicit Adding(Run &run) : run_(run) {}

    void enter(FolderHandle, const std::string &, int) override { bytes_ = begun_ = 0; }
    [[nodiscard]] bool hasUnseen(const std::string &path) override { return run_.hasUnseen(path); }
    [[nodiscard]] bool leavesUnseen(FolderHandle, const std::string &folderPath,
                                    std::string_view name) override {
        return run_.isUnseen(joinPath(folderPath, name));
    }
    void file(FolderHandle folder, std::string_view, const FileStatus &status) override {
        if (run_.admits(status))
            bytes_ = checkedAdd(bytes_, status.allocatedBytes);
        if (hasOtherNames(status))
            run_.markLinkedFiles(itemOf(folder));
    }
    std::optional<FolderHandle> subfolder(FolderHandle folder, const std::string &folderPath,
                                          std::string_view name, const FileIdentity &,
                                          SubfolderKind kind) override;
    void noStatus(FolderHandle folder, std::string_view /*name*/) override {
        run_.markIncomplete(itemOf(folder));
    }
    void unreadable(FolderHandle folder) override { run_.markIncomplete(itemOf(folder)); }
    void containsAncestor(FolderHandle folder) override { run_.markContainsAncestor(itemOf(folder)); }
    void leave(FolderHandle folder) override { run_.close(itemOf(folder), bytes_, begun_); }
    void interrupted(FolderHandle folder) override { leave(folder); }
    void abandoned(FolderHandle folder) override { run_.close(itemOf(folder), 0, 0); }

private:
    static NestedItem &itemOf(FolderHandle folder) { return *static_cast<NestedItem *>(folder); }

    Run &run_;
    // Of the current folder:
    std::int64_t bytes_ = 0;
    std::int64_t begun_ = 0;
};

std::optional<FolderHandle> Adding::subfolder(FolderHandle folder, const std::string &folderPath,
                                              std::string_view name, const FileIdentity &,
                                              SubfolderKind kind) {
    if (kind != SubfolderKind::walkable || run_.isSkipped(folderPath, name))
        return std::nullopt;
    if (NestedItem *inner = run_.innerItem(folderPath, name)) {
        run_.meet(*inner);
        return std::nullopt;
    }
    ++begun_;
    return folder;
}

Run::Run(const std::vector<SubtreeSizes::Group> &groups, const ScanOptions &options,
         const StopFlag &cancelled, const SubtreeSizes::Finished &finished, WalkPool &pool)
    : options_(options), skipped_(options), cancelled_(cancelled), finished_(finished), pool_(pool),
      items_(skipped_), groups_(groups.size()) {
    for (std::size_t group = 0; group < groups.size(); ++group) {
        for (const std::string &path : groups[group])
            groups_[group].push_back(&items_.add(path, group, !cancelled_.isSet()));
        unsettled_.push_back(groups[group].size());
        if (groups[group].empty())
            settled_.push_back(group);
    }
    items_.nest();
}

void Run::measure() {
    std::vector<PendingFolders> starts;
    for (const std::unique_ptr<NestedItem> &item : items_.all()) {
        if (item->folder)
            starts.emplace_back(item->path, item.get(), *item->folder, item->ancestors);
        else
            settle(*item);
    }
    tellSettled();
    pool_.walk(std::move(starts), false, cancelled_, [this] { return std::make_unique<Adding>(*this); });
    measureAlone();
}

/// Measures items that contain one of their own ancestors, which needs a mount of a folder inside itself.
void Run::measureAlone() {
    for (const std::unique_ptr<NestedItem> &item : items_.all()) {
        if (!item->needsWalkOfItsOwn)
            continue;
        item->measured.bytes = DiskScanner::quickSize(item->path, options_, cancelled_, pool_);
        settle(*item);
        tellSettled();
    }
}

void Run::meet(NestedItem &inner) {
    const std::lock_guard guard(lock_);
    // If a folder changes during the walk, a name may appear twice.
    if (std::exchange(inner.isMet, true))
        return;
    NestedItem &outer = *inner.outer;
    if (!inner.isFinished) {
        ++outer.open;
        return;
    }
    outer.measured.bytes = checkedAdd(outer.measured.bytes, inner.measured.bytes);
    addMarks(outer.measured, inner.measured);
}

void Run::close(NestedItem &item, std::int64_t bytes, std::int64_t begun) {
    {
        const std::lock_guard guard(lock_);
        add(item, bytes, begun - 1);
    }
    tellSettled();
}

void Run::markLinkedFiles(NestedItem &item) {
    const std::lock_guard guard(lock_);
    item.measured.hasLinkedFiles = true;
}

void Run::markIncomplete(NestedItem &item) {
    const std::lock_guard guard(lock_);
    item.measured.isIncomplete = true;
}

/// Call with the lock held. A completed item may complete its outer item, and so on.
void Run::add(NestedItem &first, std::int64_t firstBytes, std::int64_t opened) {
    std::int64_t bytes = firstBytes;
    MeasuredItem marks;
    for (NestedItem *item = &first; item != nullptr; item = item->isMet ? item->outer : nullptr) {
        item->measured.bytes = checkedAdd(item->measured.bytes, bytes);
        addMarks(item->measured, marks);
        item->open += std::exchange(opened, -1);
        if (item->open > 0)
            return;
        item->isFinished = true;
        if (!item->needsWalkOfItsOwn)
            settle(*item);
        bytes = item->measured.bytes;
        marks = item->measured;
    }
}

void Run::markContainsAncestor(NestedItem &item) {
    const std::lock_guard guard(lock_);
    if (item.outer == nullptr)
        return; // the outermost item refuses the folder just as a walk of its own does
    for (NestedItem *one = &item; one != nullptr && !one->isFinished; one = one->outer)
        one->needsWalkOfItsOwn = true;
}

/// Call with the lock held, or while nothing is walked.
void Run::settle(const NestedItem &item) {
    for (const std::size_t group : item.groups)
        if (--unsettled_[group] == 0)
            settled_.push_back(group);
}

void Run::tellSettled() {
    std::vector<std::size_t> settled;
    {
        const std::lock_guard guard(lock_);
        settled.swap(settled_);
    }
    for (const std::size_t group : settled) {
        // The items of a settled group no longer change.
        std::vector<MeasuredItem> measured;
        for (const NestedItem *item : groups_[group])
            measured.push_back(item->measured);
        const std::lock_guard guard(telling_);
        finished_(group, measured);
    }
}

} // namespace

void SubtreeSizes::measure(const std::vector<Group> &groups, const ScanOptions &options,
                           const StopFlag &cancelled, const Finished &finished, WalkPool &pool) {
    const NoMaterialization guard;
    Run(groups, options, cancelled, finished, pool).measure();
}

void SubtreeSizes::measureTogether(const std::vector<Request> &requests, const ScanOptions &options,
                                   const StopFlag &cancelled, WalkPool &pool) {
    std::vector<Group> groups;
    std::vector<std::pair<const Request *, std::size_t>> places; // of each group
    for (const Request &request : requests)
        for (std::size_t i = 0; i < request.groups.size(); ++i) {
            groups.push_back(request.groups[i]);
            places.emplace_back(&request, i);
        }
    measure(
        groups, options, cancelled,
        [&](std::size_t group, const std::vector<MeasuredItem> &measured) {
            places[group].first->finished(places[group].second, measured);
        },
        pool);
}

} // namespace brimvale
