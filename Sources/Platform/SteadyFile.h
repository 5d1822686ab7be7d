#pragma once

#include "Platform/EntryRecord.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace brimvale {

/// A regular file, read at any offset to compare it with others. A link in the last component of its path is
/// not followed; pipes and devices are refused without waiting for them. Where the system allows it, reading
/// leaves no trace: not in the date of the last access, and not in memory, except for what was there before.
class SteadyFile {
public:
    /// Opens the file at an absolute path of any length. Not open (with errno set) on failure.
    explicit SteadyFile(const std::string &path);
    ~SteadyFile();
    SteadyFile(SteadyFile &&other) noexcept;
    SteadyFile &operator=(SteadyFile &&other) = delete;
    SteadyFile(const SteadyFile &) = delete;
    SteadyFile &operator=(const SteadyFile &) = delete;

    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }
    [[nodiscard]] int descriptor() const { return descriptor_; }

    /// How it was when it was opened.
    [[nodiscard]] const EntryRecord &record() const { return record_; }

    /// Whether a part of it has no blocks, so that reading would only return zeros.
    [[nodiscard]] bool hasHole() const;

    /// Fills `buffer` with the bytes from `offset` and returns the filled part: shorter only at the end,
    /// nothing when reading fails.
    [[nodiscard]] std::optional<std::string_view> read(std::int64_t offset, std::span<char> buffer) const;

    /// Whether nothing about the file has changed since it was opened.
    [[nodiscard]] bool isUnchanged() const;

private:
    int descriptor_ = -1;
    EntryRecord record_;
};

} // namespace brimvale
