#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale::testing {

/// Inputs for what reads things that others wrote: the seeds, as random changes leave them. Always the same
/// ones, but others each time where GoogleTest shuffles the tests, whose seed then leads back to them.
class RandomInputs {
public:
    explicit RandomInputs(std::vector<std::string> seeds);

    [[nodiscard]] std::string next();

private:
    std::size_t upTo(std::size_t most);
    const std::string &anyInput() { return inputs_[upTo(inputs_.size() - 1)]; }
    std::string anyPart();

    std::vector<std::string> inputs_; ///< the seeds, and some of what became of them, so that changes add up
    std::size_t seedCount_;
    std::mt19937_64 random_;
};

} // namespace brimvale::testing
