#pragma once

#include "Faults/Round.h"
#include "Faults/Watched.h"

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace brimvale::faults {

enum class Operation { deletion, trash, backup };
inline constexpr std::array removals = {Operation::deletion, Operation::trash};

[[nodiscard]] const char *nameOf(Operation operation);

/// The arguments with which brimvalectl does it to the item at `path`, asking first or not.
[[nodiscard]] std::vector<std::string> argumentsFor(Operation operation, const std::string &path, bool asks);

/// Something on the scene.
struct Entry {
    std::string path; ///< from the top
    std::string what; ///< its kind, and content or target
    unsigned mode = 0;

    friend bool operator==(const Entry &, const Entry &) = default;
    [[nodiscard]] bool isAs(const Entry &other) const { return what == other.what && mode == other.mode; }
};

/// Everything on the scene by inode numbers, which a volume in memory does not use twice. So an entry is
/// found again wherever it was moved to.
using Census = std::map<std::uint64_t, Entry>;

/// Compares the scene after a run with what was there before.
class Verdict {
public:
    explicit Verdict(Operation operation);

    /// Set where the words of the program could not be written.
    bool wordsAreLost = false;

    /// Counts the run and its faults. Unmounts what an adversary has mounted on the scene.
    void give(const Ending &ending, Findings &findings) const;

private:
    void judgeOthers(const Census &after, Findings &findings) const;
    void judgeDeletion(const Census &after, std::size_t left, const Ending &ending, Findings &findings) const;
    void judgeTrash(const Census &after, std::size_t left, const Ending &ending, Findings &findings) const;
    void judgeBackup(const Census &after, std::size_t left, const Ending &ending, Findings &findings) const;

    /// Whether the program has said how it went.
    [[nodiscard]] bool hasTold(const Ending &ending) const;

    Operation operation_;
    Census others_; ///< all but the item
    Census item_;   ///< with its contents
};

} // namespace brimvale::faults
