#include "Core/Find/FileSearch.h"

#include "Base/FileURL.h"
#include "Core/Scan/FSNode.h"
#include "Core/Scan/FileVisitor.h"
#include "Core/Scan/InodeSet.h"
#include "Core/Scan/PlaceOfWalk.h"
#include "Platform/Dataless.h"
#include "Platform/DirectoryWalk.h"

#include <algorithm>
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
struct Search : FileSearchState {
    const FileFilter &filter;
    std::size_t most;
    std::uint32_t moment;
    InodeSet inodes = {};
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
class SearchingVisitor final : public FileVisitor {
public:
    explicit SearchingVisitor(Search &search) : FileVisitor(search), search_(search) {}

    ~SearchingVisitor() override {
        const std::lock_guard guard(search_.lock);
        FoundFiles &all = search_.found;
        std::move(files_.begin(), files_.end(), std::back_inserter(all.largest));
        keepLargest(all.largest, search_.most);
        all.sums.add(sums_);
    }
    SearchingVisitor(const SearchingVisitor &) = delete;
    SearchingVisitor &operator=(const SearchingVisitor &) = delete;

    void file(FolderHandle /*folder*/, std::string_view name, const FileStatus &status) override {
        if (status.linkCount > 1 && status.kind == FileKind::regularFile &&
            !search_.inodes.insert(status.identity.device, status.identity.inode))
            return;
        if (!count(name, status))
            return;
        const std::uint32_t modified = FSNode::secondsOf(status.modified);
        if (!search_.filter.acceptsFile(name, status.allocatedBytes, modified))
            return;
        sums_.add({fileTypeOf(name), ageOf(modified, search_.moment), 1, status.allocatedBytes});
        if (search_.most == 0)
            return;
        files_.push_back({pathOf(name), status.allocatedBytes, modified});
        if (files_.size() / 2 >= search_.most)
            keepLargest(files_, search_.most);
    }

private:
    Search &search_;
    FileSums sums_;
    std::vector<FoundFile> files_;
};

} // namespace

FoundFiles findFiles(const std::string &path, const FileFilter &filter, std::size_t most,
                     std::uint32_t moment, const ScanOptions &options, ScanStats &stats, WalkPool &pool) {
    const NoMaterialization guard;
    Search search{{SkipList(options), stats}, filter, most, moment};
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
