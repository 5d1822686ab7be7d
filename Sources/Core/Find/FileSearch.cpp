#include "Core/Find/FileSearch.h"

#include "Base/FileURL.h"
#include "Core/Scan/FSNode.h"
#include "Core/Scan/InodeSet.h"
#include "Core/Scan/PlaceOfWalk.h"
#include "Core/Scan/SumLimit.h"
#include "Platform/Dataless.h"
#include "Platform/DirectoryWalk.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

namespace brimvale {

namespace {

bool isLarger(const FoundFile &a, const FoundFile &b) {
    return a.size != b.size ? a.size > b.size : a.path < b.path;
}

/// What all walks of a search share.
struct Search {
    const FileFilter &filter;
    std::size_t most;
    std::uint32_t moment;
    SkipList skipped;
    ScanStats &stats;
    InodeSet inodes = {};
    SumLimit limit = {};
    std::mutex lock = {}; ///< protects what was found
    FoundFiles found = {};
};

void keepLargest(std::vector<FoundFile> &files, std::size_t most) {
    if (files.size() <= most)
        return;
    std::nth_element(files.begin(), files.begin() + static_cast<std::ptrdiff_t>(most), files.end(), isLarger);
    files.resize(most);
}

/// Searches one walk, and adds what it found to the others at its end.
class SearchingVisitor final : public WalkVisitor {
public:
    explicit SearchingVisitor(Search &search) : search_(search) {}

    ~SearchingVisitor() override {
        publish();
        const std::lock_guard guard(search_.lock);
        FoundFiles &all = search_.found;
        std::move(files_.begin(), files_.end(), std::back_inserter(all.largest));
        keepLargest(all.largest, search_.most);
        all.sums.add(sums_);
    }

    void enter(FolderHandle, const std::string &path, int depth) override {
        folder_ = path;
        if (depth > 2)
            return;
        publish();
        search_.stats.setCurrent(path);
    }
    bool hasUnseen(const std::string &path) override { return search_.skipped.hasUnseen(path); }
    bool leavesUnseen(FolderHandle, const std::string &folderPath, std::string_view name) override {
        return search_.skipped.unseen(joinPath(folderPath, name)).has_value();
    }

    void file(FolderHandle, std::string_view name, const FileStatus &status) override {
        if (status.linkCount > 1 && status.kind == FileKind::regularFile &&
            !search_.inodes.insert(status.identity.device, status.identity.inode))
            return;
        if (!search_.limit.admits(status))
            return search_.stats.addUnreadable(joinPath(folder_, name), UnreadableItem::claimsTooMuch);
        ++visited_;
        visitedBytes_ += status.allocatedBytes; // within the limit of all sums
        const std::uint32_t modified = FSNode::secondsOf(status.modified);
        if (!search_.filter.acceptsFile(name, status.allocatedBytes, modified))
            return;
        sums_.add({fileTypeOf(name), ageOf(modified, search_.moment), 1, status.allocatedBytes});
        if (search_.most == 0)
            return;
        files_.push_back({joinPath(folder_, name), status.allocatedBytes, modified});
        if (files_.size() / 2 >= search_.most)
            keepLargest(files_, search_.most);
    }

    std::optional<FolderHandle> subfolder(FolderHandle, const std::string &folderPath, std::string_view name,
                                          const FileIdentity &, SubfolderKind) override {
        return search_.skipped.contains(folderPath, name) ? std::nullopt
                                                          : std::optional<FolderHandle>(nullptr);
    }
    void noStatus(FolderHandle, std::string_view name) override {
        const int error = errno;
        if (error != ENOENT)
            search_.stats.addUnreadable(joinPath(folder_, name), error);
    }
    void unreadable(FolderHandle) override {
        const int error = errno;
        search_.stats.addUnreadable({}, error); // the path of one that was not opened is not known
    }
    void leave(FolderHandle) override {}
    void interrupted(FolderHandle) override {}
    void abandoned(FolderHandle) override {}

private:
    void publish() { search_.stats.add(std::exchange(visited_, 0), std::exchange(visitedBytes_, 0)); }

    Search &search_;
    std::string folder_; ///< the path of the current one
    std::int64_t visited_ = 0;
    std::int64_t visitedBytes_ = 0;
    FileSums sums_;
    std::vector<FoundFile> files_;
};

} // namespace

FoundFiles findFiles(const std::string &path, const FileFilter &filter, std::size_t most,
                     std::uint32_t moment, const ScanOptions &options, ScanStats &stats, WalkPool &pool) {
    const NoMaterialization guard;
    Search search{filter, most, moment, SkipList(options), stats};
    const std::optional<FileStatus> status = fileStatus(path);
    if (!status)
        return {};
    if (status->kind == FileKind::directory) {
        pool.walk(PendingFolders(placeOfWalk(path), nullptr, status->identity), options.crossesMountPoints,
                  stats.stopFlag(), [&] { return std::make_unique<SearchingVisitor>(search); });
    } else {
        SearchingVisitor visitor(search);
        const FileURL url(path);
        visitor.enter(nullptr, url.parent().path(), 0);
        visitor.file(nullptr, url.fileName(), *status);
    }
    std::sort(search.found.largest.begin(), search.found.largest.end(), isLarger);
    return std::move(search.found);
}

} // namespace brimvale
