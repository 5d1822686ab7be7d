#include "Faults/Round.h"

#include <array>
#include <cstdio>

namespace brimvale::faults {

namespace {

constexpr long mostPrintedOfAKind = 25;
constexpr std::array names = {"touched", "lost", "lies", "crashes", "hangs"}; ///< of the faults

std::string grouped(long number) {
    std::string digits = std::to_string(number);
    for (std::size_t end = digits.size(); end > 3; end -= 3)
        digits.insert(end - 3, ",");
    return digits;
}

} // namespace

void Findings::begin(long round, std::string what) {
    round_ = round;
    what_ = std::move(what);
}

void Findings::add(Fault fault, const std::string &what) {
    if (++faults_[fault] > mostPrintedOfAKind)
        return;
    std::printf("%s: %s: %s\n  again: %s 1 %ld%s\n", names.at(static_cast<std::size_t>(fault)), what_.c_str(),
                what.c_str(), again_.c_str(), round_, who_.c_str());
    std::fflush(stdout);
}

std::string Findings::figures(const std::string &actions, const std::string &runs) const {
    std::string line = grouped(actions_) + " " + actions + " in " + grouped(runs_) + " " + runs;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto found = faults_.find(static_cast<Fault>(i));
        line +=
            (i == 0 ? ": " : ", ") + grouped(found == faults_.end() ? 0 : found->second) + " " + names.at(i);
    }
    return line;
}

} // namespace brimvale::faults
