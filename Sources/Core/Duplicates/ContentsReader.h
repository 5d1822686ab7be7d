#pragma once

#include "Core/Duplicates/Candidates.h"
#include "Core/Duplicates/DuplicateProgress.h"
#include "Platform/EntryRecord.h"
#include "Platform/SteadyFile.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// A candidate that was opened once.
struct ReadFile {
    const Candidate *candidate;
    EntryRecord record; ///< how it was then
    std::string digest; ///< of its first and last block; of the whole contents where they are short
};

/// Reads candidates for a search, and counts what could not be compared. Thread-safe.
class ContentsReader {
public:
    /// Files up to this length, in bytes, are read as a whole at first.
    static constexpr std::int64_t shortLength = 16'384;

    /// `progress` must outlive it.
    explicit ContentsReader(DuplicateProgress &progress) : progress_(progress) {}

    /// Reads the first and the last block of a file, or all of a short one. Nothing for a file that is not
    /// the one that was found, has holes, changed, or can't be read.
    [[nodiscard]] std::optional<ReadFile> readEdges(const Candidate &candidate);

    /// The file, opened again. Nothing if it has changed since, or can't be opened.
    [[nodiscard]] std::optional<SteadyFile> openAgain(const ReadFile &file);

    /// Fills `buffer` from `offset`, where the file must have that many bytes. Nothing if that fails.
    [[nodiscard]] bool read(const SteadyFile &file, std::int64_t offset, std::span<char> buffer);

    /// Whether the file is as it was when it was opened; counts it if not.
    [[nodiscard]] bool isUnchanged(const SteadyFile &file);

    /// Adds to the bytes that are done.
    void note(std::int64_t bytes) { progress_.haveRead += bytes; }

    [[nodiscard]] bool isStopped() const { return progress_.stats.cancelled(); }

    [[nodiscard]] std::int64_t withHoles() const { return withHoles_; }
    [[nodiscard]] std::int64_t changed() const { return changed_; }
    [[nodiscard]] std::int64_t unreadable() const { return unreadable_; }

private:
    DuplicateProgress &progress_;
    std::atomic<std::int64_t> withHoles_ = 0;
    std::atomic<std::int64_t> changed_ = 0;
    std::atomic<std::int64_t> unreadable_ = 0;
};

} // namespace brimvale
