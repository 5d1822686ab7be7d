#include "Core/Duplicates/Candidates.h"

#include "Core/Scan/PlaceOfWalk.h"
#include "Core/Scan/SumLimit.h"
#include "Platform/Dataless.h"
#include "Platform/DirectoryWalk.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <iterator>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

namespace brimvale {

namespace {

/// What all walks of a search share.
struct CandidateSearch {
    std::int64_t leastLength;
    SkipList skipped;
    ScanStats &stats;
    SumLimit limit = {};
    std::atomic<std::int64_t> dataless = 0;
    std::mutex lock = {}; ///< protects what was found
    std::vector<Candidate> found = {};
};

/// Notes the files of one walk, and adds them to the others at its end.
class CandidateVisitor final : public WalkVisitor {
public:
    explicit CandidateVisitor(CandidateSearch &search) : search_(search) {}

    ~CandidateVisitor() override {
        publish();
        const std::lock_guard guard(search_.lock);
        std::move(files_.begin(), files_.end(), std::back_inserter(search_.found));
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
        if (status.kind != FileKind::regularFile || status.length < search_.leastLength)
            return;
        if (status.isDataless) {
            ++search_.dataless;
            return;
        }
        if (!search_.limit.admits(status))
            return search_.stats.addUnreadable(joinPath(folder_, name), UnreadableItem::claimsTooMuch);
        ++visited_;
        visitedBytes_ += status.allocatedBytes; // within the limit of all sums
        files_.push_back({joinPath(folder_, name), status});
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

    CandidateSearch &search_;
    std::string folder_; ///< the path of the current one
    std::int64_t visited_ = 0;
    std::int64_t visitedBytes_ = 0;
    std::vector<Candidate> files_;
};

void walkPlaces(const std::vector<FileURL> &places, bool crossesMountPoints, CandidateSearch &search,
                WalkPool &pool) {
    std::vector<PendingFolders> starts;
    for (const FileURL &place : places) {
        const std::string path = placeOfWalk(place.path());
        const std::optional<FileStatus> status = fileStatus(path);
        if (!status)
            continue;
        if (status->kind == FileKind::directory) {
            starts.emplace_back(path, nullptr, status->identity);
            continue;
        }
        CandidateVisitor visitor(search);
        visitor.enter(nullptr, FileURL(path).parent().path(), 0);
        visitor.file(nullptr, FileURL(path).fileName(), *status);
    }
    pool.walk(std::move(starts), crossesMountPoints, search.stats.stopFlag(),
              [&] { return std::make_unique<CandidateVisitor>(search); });
}

/// Each file once, by length and identity.
void sortWithoutOtherNames(std::vector<Candidate> &files) {
    const auto key = [](const Candidate &file) {
        const FileStatus &status = file.status;
        return std::tuple(status.length, status.identity.device, status.identity.inode);
    };
    std::sort(files.begin(), files.end(), [&](const Candidate &a, const Candidate &b) {
        const auto keyOfA = key(a);
        const auto keyOfB = key(b);
        if (keyOfA != keyOfB)
            return keyOfA < keyOfB;
        return std::tuple(a.path.size(), std::string_view(a.path)) <
               std::tuple(b.path.size(), std::string_view(b.path));
    });
    const auto isSame = [](const Candidate &a, const Candidate &b) {
        return a.status.identity == b.status.identity;
    };
    files.erase(std::unique(files.begin(), files.end(), isSame), files.end());
}

/// Leaves out the files whose length no other has. The files are sorted by length.
void dropSingleLengths(std::vector<Candidate> &files) {
    std::size_t kept = 0;
    for (std::size_t first = 0, next = 0; first < files.size(); first = next) {
        while (next < files.size() && files[next].status.length == files[first].status.length)
            ++next;
        if (next - first < 2)
            continue;
        for (std::size_t i = first; i < next; ++i, ++kept)
            if (kept != i)
                files[kept] = std::move(files[i]);
    }
    files.erase(files.begin() + static_cast<std::ptrdiff_t>(kept), files.end());
}

} // namespace

Candidates findCandidates(const std::vector<FileURL> &places, std::int64_t leastLength,
                          const ScanOptions &options, ScanStats &stats, WalkPool &pool) {
    const NoMaterialization guard;
    CandidateSearch search{std::max<std::int64_t>(leastLength, 1), SkipList(options), stats};
    walkPlaces(places, options.crossesMountPoints, search, pool);
    Candidates candidates;
    if (stats.cancelled())
        return candidates;
    candidates.files = std::move(search.found);
    sortWithoutOtherNames(candidates.files);
    candidates.seen = static_cast<std::int64_t>(candidates.files.size());
    for (const Candidate &file : candidates.files)
        candidates.seenBytes += file.status.length;
    dropSingleLengths(candidates.files);
    const std::size_t empty = std::erase_if(
        candidates.files, [](const Candidate &file) { return file.status.allocatedBytes == 0; });
    candidates.withoutBytes = search.dataless + static_cast<std::int64_t>(empty);
    dropSingleLengths(candidates.files);
    return candidates;
}

} // namespace brimvale
