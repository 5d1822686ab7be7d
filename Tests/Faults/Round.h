#pragma once

#include <cstddef>
#include <map>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

namespace brimvale::faults {

enum class Fault {
    touched, ///< something else than the selected item was removed, moved or changed
    lost,    ///< an item is neither at its place nor in a Trash with its info file, or not whole
    lie,     ///< the exit status or the words do not agree with the disk
    crash,
    hang,
};

/// What the rounds of a part found.
class Findings {
public:
    /// `again` is the command that runs a round again, up to the number of rounds; `who` comes last in it.
    Findings(std::string again, std::string who) : again_(std::move(again)), who_(std::move(who)) {}

    /// Names the round that begins: its number, and what is tried in it.
    void begin(long round, std::string what);

    /// Counts a fault of this round. Prints it, with the command that runs the round again.
    void add(Fault fault, const std::string &what);

    void countActions(long count) { actions_ += count; }
    void countRun() { ++runs_; }

    /// The line of figures: "1,204 exchanges in 43 removals: 0 touched, …".
    [[nodiscard]] std::string figures(const std::string &actions, const std::string &runs) const;

    /// Whether anything was tried at all.
    [[nodiscard]] bool hasActed() const { return actions_ > 0; }

    [[nodiscard]] bool hasFaults() const { return !faults_.empty(); }

private:
    std::string again_, who_, what_;
    long round_ = 0, actions_ = 0, runs_ = 0;
    std::map<Fault, long> faults_;
};

/// Which rounds of a part to run. A round is determined by its number, so a single one can be run again.
struct Rounds {
    long first = 0;
    long count = 0; ///< 0: as many as there are cases
};

/// Tries a case in each of the rounds: neighbouring rounds try cases that are far apart, and as many rounds
/// as there are cases try every one. A case tells what it is by `described()`.
template<class Case>
void runCases(const std::vector<Case> &cases, Rounds rounds, Findings &findings,
              void (*attempt)(const Case &, Findings &)) {
    const auto count = static_cast<long>(cases.size());
    long stride = 7919;
    while (std::gcd(stride, count) != 1)
        ++stride;
    const long end = rounds.first + (rounds.count > 0 ? rounds.count : count);
    for (long round = rounds.first; round < end; ++round) {
        const Case &one = cases[static_cast<std::size_t>(round % count * stride % count)];
        findings.begin(round, one.described());
        attempt(one, findings);
    }
}

// The parts. Each answers the line of figures.

/// Adversaries that exchange, move or mount things without pause while an item is removed.
[[nodiscard]] std::string races(Rounds rounds, Findings &findings);

/// Every system call of every operation fails in every plausible way, or the program is killed before it.
[[nodiscard]] std::string failures(Rounds rounds, Findings &findings);

/// An adversary acts right before each system call of a removal, in the item or around it.
[[nodiscard]] std::string steps(Rounds rounds, Findings &findings);

/// Questions of "brimvalectl remove" that are answered after something else took the place of the item.
[[nodiscard]] std::string questions(Rounds rounds, Findings &findings);

/// Guarded folders by every spelling, link and mount.
[[nodiscard]] std::string guards(Rounds rounds, Findings &findings);

/// Exchanges while the system asks for the administrator's password.
[[nodiscard]] std::string administrator(Rounds rounds, Findings &findings);

} // namespace brimvale::faults
