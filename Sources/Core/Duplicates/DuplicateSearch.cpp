#include "Core/Duplicates/DuplicateSearch.h"

#include "Core/Duplicates/EqualContents.h"
#include "Core/Duplicates/RemovableFiles.h"
#include "Core/Scan/ParallelLoop.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace brimvale {

namespace {

using FileSets = std::vector<FileSet>;

/// The order in which files are read: mostly that of the disk.
auto diskOrder(const FileStatus &status) {
    return std::tuple(status.identity.device, status.identity.inode);
}

/// Reads the first and last blocks of all candidates, in the order of the disk.
std::vector<ReadFile> readAllEdges(const std::vector<Candidate> &candidates, ContentsReader &reader) {
    std::vector<const Candidate *> order;
    for (const Candidate &one : candidates)
        order.push_back(&one);
    std::sort(order.begin(), order.end(), [](const Candidate *a, const Candidate *b) {
        return diskOrder(a->status) < diskOrder(b->status);
    });
    std::vector<std::optional<ReadFile>> read(order.size());
    forEachInParallel(order.size(), threadsForReading(), [&](std::size_t i) {
        if (!reader.isStopped())
            read[i] = reader.readEdges(*order[i]);
    });
    std::vector<ReadFile> files;
    for (std::optional<ReadFile> &one : read)
        if (one)
            files.push_back(*std::move(one));
    return files;
}

/// The parts of a list that `key` finds equal, each of at least two files, by key.
template<class Key>
FileSets equalParts(FileSet files, Key key) {
    std::stable_sort(files.begin(), files.end(),
                     [&](const ReadFile *a, const ReadFile *b) { return key(a) < key(b); });
    FileSets sets;
    for (std::size_t first = 0, next = 0; first < files.size(); first = next) {
        while (next < files.size() && key(files[next]) == key(files[first]))
            ++next;
        if (next - first > 1)
            sets.emplace_back(files.begin() + static_cast<std::ptrdiff_t>(first),
                              files.begin() + static_cast<std::ptrdiff_t>(next));
    }
    return sets;
}

/// One search, after its walk.
class Search {
public:
    explicit Search(DuplicateProgress &progress) : progress_(progress), reader_(progress) {}

    DuplicatesFound run(const Candidates &candidates) {
        const std::vector<ReadFile> files = readAllEdges(candidates.files, reader_);
        FileSet all;
        for (const ReadFile &file : files)
            all.push_back(&file);
        FileSets sets = equalParts(std::move(all), [](const ReadFile *file) {
            return std::tuple(file->record.length, std::string_view(file->digest));
        });
        for (const FileSet &set : sets)
            if (isLong(set))
                progress_.toRead += set.front()->record.length * static_cast<std::int64_t>(set.size());
        progress_.isReading = true;
        splitLargeSets(sets);
        std::sort(sets.begin(), sets.end(), [](const FileSet &a, const FileSet &b) {
            return diskOrder(a.front()->candidate->status) < diskOrder(b.front()->candidate->status);
        });
        forEachInParallel(sets.size(), threadsForReading(), [&](std::size_t i) { finish(sets[i]); });
        return result(candidates);
    }

private:
    static bool isLong(const FileSet &set) {
        return set.front()->record.length > ContentsReader::shortLength;
    }
    /// Whether the files have only been compared by their first and last blocks, and are too many to be read
    /// in step.
    static bool needsDigests(const FileSet &set) { return isLong(set) && set.size() > mostInStep; }

    /// Splits the sets of many long files by the digests of their contents.
    void splitLargeSets(FileSets &sets) {
        const auto large = std::stable_partition(sets.begin(), sets.end(),
                                                 [](const FileSet &set) { return !needsDigests(set); });
        FileSet files;
        for (auto set = large; set != sets.end(); ++set)
            files.insert(files.end(), set->begin(), set->end());
        sets.erase(large, sets.end());
        std::vector<std::string> digests(files.size());
        forEachInParallel(files.size(), threadsForReading(),
                          [&](std::size_t i) { digests[i] = digestOfContents(*files[i], reader_); });
        std::unordered_map<const ReadFile *, std::string> digestOf;
        FileSet digested;
        for (std::size_t i = 0; i < files.size(); ++i)
            if (!digests[i].empty()) {
                digested.push_back(files[i]);
                digestOf.emplace(files[i], std::move(digests[i]));
            }
        for (FileSet &set : equalParts(std::move(digested), [&](const ReadFile *file) {
                 return std::tuple(file->record.length, std::string_view(digestOf.at(file)));
             })) {
            wereDigested_.insert(set.front());
            sets.push_back(std::move(set));
        }
    }

    void finish(const FileSet &set) {
        if (reader_.isStopped())
            return;
        if (!isLong(set) || wereDigested_.contains(set.front()))
            return add(set);
        for (const FileSet &equal : splitInStep(set, reader_))
            add(equal);
    }

    void add(const FileSet &equal) {
        DuplicateGroup group{equal.front()->record.length, {}};
        for (const ReadFile *file : equal)
            group.files.push_back({.url = FileURL(file->candidate->path),
                                   .record = file->record,
                                   .size = file->candidate->status.allocatedBytes,
                                   .names = static_cast<std::int64_t>(file->candidate->status.linkCount)});
        std::unique_ptr<RemovableFiles> removable = takeRemovable();
        const bool hasDuplicates = removable->complete(group);
        const std::lock_guard guard(lock_);
        idle_.push_back(std::move(removable));
        if (hasDuplicates)
            groups_.push_back(std::move(group));
    }

    /// One for each thread, which is used again.
    std::unique_ptr<RemovableFiles> takeRemovable() {
        const std::lock_guard guard(lock_);
        if (idle_.empty())
            return std::make_unique<RemovableFiles>();
        std::unique_ptr<RemovableFiles> taken = std::move(idle_.back());
        idle_.pop_back();
        return taken;
    }

    DuplicatesFound result(const Candidates &candidates) {
        DuplicatesFound found{.groups = std::move(groups_),
                              .files = candidates.seen,
                              .bytes = candidates.seenBytes,
                              .withHoles = candidates.withoutBytes + reader_.withHoles(),
                              .changed = reader_.changed(),
                              .unreadable = reader_.unreadable(),
                              .wasStopped = reader_.isStopped()};
        sortByFreedBytes(found.groups);
        return found;
    }

    DuplicateProgress &progress_;
    ContentsReader reader_;
    std::unordered_set<const ReadFile *> wereDigested_; ///< the first file of each set with equal digests
    std::mutex lock_;                                   ///< protects what follows
    std::vector<DuplicateGroup> groups_;
    std::vector<std::unique_ptr<RemovableFiles>> idle_;
};

} // namespace

DuplicatesFound findDuplicates(const std::vector<FileURL> &places, std::int64_t leastLength,
                               const ScanOptions &options, DuplicateProgress &progress) {
    const Candidates candidates = findCandidates(places, leastLength, options, progress.stats);
    return Search(progress).run(candidates);
}

} // namespace brimvale
