#include "Core/Duplicates/Candidates.h"

#include "Base/FileURL.h"
#include "Core/Scan/FileVisitor.h"
#include "Core/Scan/PlaceOfWalk.h"
#include "Platform/Dataless.h"
#include "Platform/DirectoryWalk.h"

#include <algorithm>
#include <atomic>
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
struct CandidateSearch : FileSearchState {
    std::int64_t leastLength = 1;
    std::atomic<std::int64_t> dataless = 0;
    std::mutex lock = {}; ///< protects what was found
    std::vector<Candidate> found = {};
};

/// Notes the files of one walk, and adds them to the others at its end.
class CandidateVisitor final : public FileVisitor {
public:
    explicit CandidateVisitor(CandidateSearch &search) : FileVisitor(search), search_(search) {}

    ~CandidateVisitor() override {
        const std::lock_guard guard(search_.lock);
        std::move(files_.begin(), files_.end(), std::back_inserter(search_.found));
    }
    CandidateVisitor(const CandidateVisitor &) = delete;
    CandidateVisitor &operator=(const CandidateVisitor &) = delete;

    void file(FolderHandle /*folder*/, std::string_view name, const FileStatus &status) override {
        if (status.kind != FileKind::regularFile || status.length < search_.leastLength)
            return;
        if (status.isDataless)
            ++search_.dataless;
        else if (count(name, status))
            files_.push_back({pathOf(name), status});
    }

private:
    CandidateSearch &search_;
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
    CandidateSearch search{{SkipList(options), stats}, std::max<std::int64_t>(leastLength, 1)};
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
