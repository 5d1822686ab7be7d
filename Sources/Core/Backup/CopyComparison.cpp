#include "Core/Backup/CopyComparison.h"

#include "Base/FileURL.h"
#include "Core/Scan/ParallelLoop.h"
#include "Platform/ExtendedAttributes.h"
#include "Platform/FileReader.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <utility>

namespace brimvale {

namespace {

/// `relative` inside `place`; the place itself where `relative` is empty.
std::string within(const std::string &place, const std::string &relative) {
    return relative.empty() ? place : joinPath(place, relative);
}

/// A file that is read beside another one to compare them.
class Twin {
public:
    explicit Twin(const std::string &path) : reader_(path), isReadable_(reader_.isOpen()) {}

    void compare(std::string_view piece) {
        buffer_.resize(std::max(buffer_.size(), piece.size()));
        if (!isReadable_ || !isSame_)
            return;
        const std::optional<std::string_view> own = reader_.read(std::span(buffer_).first(piece.size()));
        isReadable_ = own.has_value();
        isSame_ = own == piece;
    }

    [[nodiscard]] bool isReadable() const { return isReadable_; }

    /// Whether this file is also at its end.
    [[nodiscard]] bool isSameToTheEnd() {
        std::array<char, 1> rest{};
        return isReadable_ && isSame_ && reader_.read(rest) == std::string_view();
    }

private:
    FileReader reader_;
    std::vector<char> buffer_;
    bool isReadable_;
    bool isSame_ = true;
};

struct Compared {
    std::optional<BackedUpEntry> copy;
    std::optional<CopyDifference::Kind> difference;
    bool hasOtherMode = false;
    bool lacksAttributes = false;
};

/// How the contents of an original and its copy, which are of one kind, differ.
std::optional<CopyDifference::Kind> compareContents(const std::string &source, const std::string &destination,
                                                    const std::string &relativePath, EntryKind kind,
                                                    const StopFlag &cancelled,
                                                    std::optional<BackedUpEntry> &copy) {
    using Kind = CopyDifference::Kind;
    if (kind != EntryKind::file) {
        copy = readBackedUpEntry(destination, relativePath, cancelled);
        if (!copy)
            return Kind::unreadable;
        const bool isSame = kind != EntryKind::link || linkTarget(source) == copy->linkTarget;
        return isSame ? std::nullopt : std::optional(Kind::otherContent);
    }
    Twin original(source);
    copy = readBackedUpEntry(destination, relativePath, cancelled,
                             [&](std::string_view piece) { original.compare(piece); });
    if (!copy || !original.isReadable())
        return Kind::unreadable;
    return original.isSameToTheEnd() ? std::nullopt : std::optional(Kind::otherContent);
}

/// Some file systems keep only every second of a date.
bool isSameDate(Date a, Date b) {
    const auto [earlier, later] = std::minmax(a, b);
    return earlier == later || later - std::chrono::seconds(2) <= earlier;
}

Compared compareEntry(const std::string &source, const std::string &destination,
                      const std::string &relativePath, const EntryRecord &original,
                      const StopFlag &cancelled) {
    Compared result;
    const std::optional<EntryRecord> copy = entryRecord(destination);
    if (!copy || copy->kind != original.kind) {
        result.difference = copy ? CopyDifference::Kind::otherKind : CopyDifference::Kind::missing;
        return result;
    }
    result.difference =
        compareContents(source, destination, relativePath, original.kind, cancelled, result.copy);
    if (result.difference)
        return result;
    // A link's own mode means nothing.
    if (original.kind != EntryKind::link)
        result.hasOtherMode =
            copy->permissions != original.permissions || !isSameDate(copy->modified, original.modified);
    result.lacksAttributes = !lostAttributes(source, destination).empty();
    return result;
}

/// Calls `work` with the number of every entry on several threads. Small files are mostly waited for, so many
/// of them are read at once.
void forEachBySize(const std::vector<ListedEntry> &entries, const std::function<void(std::size_t)> &work) {
    constexpr std::int64_t large = 1 << 20;
    constexpr std::size_t threadsForSmallFiles = 8;
    std::vector<std::size_t> smallOnes, largeOnes;
    for (std::size_t i = 0; i < entries.size(); ++i)
        (entries[i].record.length > large ? largeOnes : smallOnes).push_back(i);
    forEachInParallel(smallOnes.size(), threadsForSmallFiles, [&](std::size_t n) { work(smallOnes[n]); });
    forEachInParallel(largeOnes.size(), threadsForReading(), [&](std::size_t n) { work(largeOnes[n]); });
}

} // namespace

CopyComparison compareCopy(const std::string &source, const std::string &destination,
                           const std::string &relativePath, const StopFlag &cancelled) {
    CopyComparison comparison;
    comparison.originals = listFiles(source, cancelled);
    const std::vector<ListedEntry> &entries = comparison.originals.entries;
    if (entries.empty()) // it has gone since it was copied
        comparison.differing.push_back({"", CopyDifference::Kind::unreadable});
    std::vector<Compared> compared(entries.size());
    forEachBySize(entries, [&](std::size_t i) {
        if (cancelled.isSet())
            return;
        const std::string &path = entries[i].path;
        compared[i] = compareEntry(within(source, path), within(destination, path),
                                   within(relativePath, path), entries[i].record, cancelled);
    });

    for (const std::string &path : comparison.originals.unreadable)
        comparison.differing.push_back({path, CopyDifference::Kind::unreadable});
    for (std::size_t i = 0; i < compared.size(); ++i) {
        if (compared[i].difference)
            comparison.differing.push_back({entries[i].path, *compared[i].difference});
        if (compared[i].hasOtherMode)
            comparison.otherModes.push_back(entries[i].path);
        if (compared[i].lacksAttributes)
            comparison.lesserAttributes.push_back(entries[i].path);
        if (compared[i].copy)
            comparison.copies.push_back(*std::move(compared[i].copy));
    }
    return comparison;
}

} // namespace brimvale
